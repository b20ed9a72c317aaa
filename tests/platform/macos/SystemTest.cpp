#include <gtest/gtest.h>
#include <pwd.h>
#include <stdlib.h>
#include <unistd.h>

#include "platform/FileSystem.h"
#include "platform/Process.h"

namespace quorvantis {

TEST(PathTextTest, IsComparedAfterNormalisation) {
    EXPECT_TRUE(platform::samePathText("/caf\u00E9", "/cafe\u0301"));
    EXPECT_FALSE(platform::samePathText("/caf\u00E9", "/cafe"));
    EXPECT_FALSE(platform::samePathText("/A", "/a"));
    EXPECT_TRUE(platform::samePathText("/\xFF", "/\xFF"));
    EXPECT_FALSE(platform::samePathText("/\xFF", "/\xFE"));
    EXPECT_EQ(platform::resolvingSymbolicLinks("/tmp"), "/tmp") << "and not below /private";
}

TEST(HomeFolderTest, IsThatOfTheEffectiveUserButNotOfRootForAnother) {
    const std::string before = platform::environmentVariable("HOME").value_or("");
    setenv("HOME", "/nowhere", 1);
    EXPECT_EQ(platform::homeFolder(), getpwuid(geteuid())->pw_dir);
    setenv("HOME", before.c_str(), 1);
    if (geteuid() != 0) GTEST_SKIP() << "only root can run as others";
    const passwd daemon = *getpwnam("daemon");
    const std::string home = daemon.pw_dir;
    for (const auto& [real, effective] : {std::pair{uid_t{0}, daemon.pw_uid}, {daemon.pw_uid, uid_t{0}}}) {
        ASSERT_EQ(setreuid(real, effective), 0);
        EXPECT_EQ(platform::homeFolder(), home) << real << " " << effective;
        ASSERT_EQ(setreuid(0, 0), 0);
    }
}

}  // namespace quorvantis
