#include "platform/HomeFolder.h"

#include <gtest/gtest.h>
#include <pwd.h>
#include <stdlib.h>
#include <unistd.h>

#include "platform/PathText.h"

namespace quorvantis {

TEST(HomeFolderTest, IsThatOfTheUserDatabase) {
    setenv("HOME", "/nowhere", 1);
    EXPECT_EQ(platform::homeFolder(), getpwuid(getuid())->pw_dir);
}

TEST(PathTextTest, IsComparedAfterNormalisation) {
    EXPECT_TRUE(platform::samePathText("/\u00e9", "/e\u0301"));
    EXPECT_FALSE(platform::samePathText("/\u00e9", "/\u00c9"));
    EXPECT_EQ(platform::resolvingSymbolicLinks("/tmp"), "/tmp") << "and not below /private";
}

}  // namespace quorvantis
