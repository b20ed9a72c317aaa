#include "integration/ProcessRunner.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include "platform/HomeFolder.h"
#include "support/Environment.h"
#include "support/Files.h"

namespace quorvantis {

static ProcessResult shell(const std::string& script) {
    return runProcess("/bin/sh", {"-c", script, "name", "a b", "$HOME"});
}

TEST(ProcessRunnerTest, CollectsBothStreamsAndTheStatus) {
    const std::tuple<std::string, int, std::string> cases[] = {
        {"echo out; echo err >&2; echo out; exit 3", 3, "out\nerr\nout\n"},
        {"printf %s \"$1|$2\"", 0, "a b|$HOME"},
        {"cat; echo end of input", 0, "end of input\n"},
        {"echo first; kill -9 $$", 9, "first\n"},
        {"printf 'x\\377'; exit 2", 2, ""},
        {"kill -PIPE $$", 13, ""},
        {"ls /proc/$$/fd | wc -l", 0, "3\n"},
    };
    for (const auto& [script, status, output] : cases) {
        const auto result = shell(script);
        EXPECT_EQ(result.status, status) << script;
        EXPECT_EQ(result.output, output) << script;
    }
    EXPECT_EQ(shell("head -c 10485760 /dev/zero").output.size(), 10'485'760u);
}

TEST(ProcessRunnerTest, AddsToThePath) {
    const std::string before = environmentVariable("PATH").value();
    const std::string added = ":/opt/homebrew/bin:/usr/local/bin:" + platform::homeFolder() + "/.local/bin\n";
    EXPECT_EQ(shell("echo $PATH").output, before + added);
    setenv("PATH", "", 1);
    EXPECT_EQ(shell("echo $PATH").output, added);
    unsetenv("PATH");
    EXPECT_EQ(shell("echo $PATH").output, "/usr/bin:/bin" + added);
    setenv("PATH", before.c_str(), 1);
}

TEST(ProcessRunnerTest, FailsOnlyWhenNothingStarts) {
    const std::pair<std::string, std::string> cases[] = {
        {"/nowhere/tool", "The file “tool” doesn’t exist."},
        {"sh", "The file “sh” doesn’t exist."},
        {"/etc/passwd", "The operation couldn’t be completed. (Permission denied)"},
    };
    for (const auto& [executable, message] : cases) {
        try {
            runProcess(executable, {});
            ADD_FAILURE() << executable;
        } catch (const FileError& error) {
            EXPECT_EQ(error.what(), message);
        }
    }
}

}  // namespace quorvantis
