#include "integration/ProcessRunner.h"

#include <csignal>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include "platform/Process.h"
#include "support/Files.h"
#include "support/Paths.h"

extern "C" char** environ;

namespace quorvantis {

/// Runs this program in a role of `playTool`.
static ProcessResult play(std::vector<std::string> words) {
    words.insert(words.begin(), "--tool");
    return runProcess(platform::executablePath(getpid()).value(), words);
}

TEST(ProcessRunnerTest, CollectsBothStreamsAndTheStatus) {
    struct Case {
        std::vector<std::string> words;
        int status;
        std::string output;
    };
    for (const auto& [words, status, output] :
         {Case{{"both"}, 3, "out\nerr\nout again"}, Case{{"arguments", "a b", "$HOME"}, 0, "a b|$HOME"},
          Case{{"bytes"}, 0, ""}, Case{{"flood"}, 0, std::string(10'485'760, 'x')},
          Case{{"signal", "9"}, 9, "last words"}, Case{{"signal", "13"}, 13, "last words"},
          Case{{"read"}, 0, "0"}, Case{{"descriptors"}, 0, "3"}}) {
        const auto result = play(words);
        EXPECT_EQ(result.status, status) << words[0];
        EXPECT_TRUE(result.output == output) << words[0] << ": " << result.output.substr(0, 80);
    }
}

TEST(ProcessRunnerTest, AddsToThePath) {
    const std::string before = platform::environmentVariable("PATH").value();
    const std::string added = ":/opt/homebrew/bin:/usr/local/bin:" + platform::homeFolder() + "/.local/bin";
    EXPECT_EQ(play({"path"}).output, before + added);
    setenv("PATH", "", 1);
    EXPECT_EQ(play({"path"}).output, added);
    unsetenv("PATH");
    EXPECT_EQ(play({"path"}).output, "/usr/bin:/bin" + added);
    setenv("PATH", before.c_str(), 1);
}

TEST(ProcessRunnerTest, WorksInAnOddProcess) {
    EXPECT_EXIT(
        {
            environ = nullptr;
            _exit(play({"path"}).output.starts_with("/usr/bin:/bin:") ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
    EXPECT_EXIT(
        {
            setenv("HOME", "home", 1);
            _exit(play({"path"}).output.ends_with(absolutePath("home/.local/bin")) ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
    EXPECT_EXIT(
        {
            std::signal(SIGCHLD, SIG_IGN);
            try {
                play({"both"});
            } catch (const FileError&) {
                _exit(0);
            }
        },
        testing::ExitedWithCode(0), "");
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
