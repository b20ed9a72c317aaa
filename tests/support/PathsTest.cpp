#include "support/Paths.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace quorvantis {

TEST(PathsTest, AreMadeAbsolute) {
    const std::string here = std::filesystem::current_path();
    EXPECT_EQ(absolutePath("/a//./b/../c//"), "/a//./b/../c");
    EXPECT_EQ(absolutePath("///"), "/");
    EXPECT_EQ(absolutePath(""), here);
    EXPECT_EQ(absolutePath("a/./b/../~/"), here + "/a/~");
    EXPECT_EQ(absolutePath("a//b//../c"), here + "/a//c");
    EXPECT_EQ(absolutePath("../../../../../../../../../../../.."), "/");
}

}  // namespace quorvantis
