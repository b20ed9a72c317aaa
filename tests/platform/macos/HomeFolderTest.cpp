#include "platform/HomeFolder.h"

#include <gtest/gtest.h>
#include <pwd.h>
#include <stdlib.h>
#include <unistd.h>

#include "support/Environment.h"

namespace quorvantis {

TEST(HomeFolderTest, IsThatOfTheUserDatabase) {
    const std::string before = environmentVariable("HOME").value_or("");
    setenv("HOME", "/nowhere", 1);
    EXPECT_EQ(platform::homeFolder(), getpwuid(getuid())->pw_dir);
    setenv("HOME", before.c_str(), 1);
}

}  // namespace quorvantis
