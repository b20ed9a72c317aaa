#include <gtest/gtest.h>

#include "platform/FileSystem.h"

namespace quorvantis {

TEST(PathTextTest, IsComparedAfterNormalisation) {
    EXPECT_TRUE(platform::samePathText("/\u00e9", "/e\u0301"));
    EXPECT_FALSE(platform::samePathText("/\u00e9", "/\u00c9"));
    EXPECT_EQ(platform::resolvingSymbolicLinks("/tmp"), "/tmp") << "and not below /private";
}

}  // namespace quorvantis
