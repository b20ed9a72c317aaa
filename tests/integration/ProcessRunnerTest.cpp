#include "integration/ProcessRunner.h"

#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include "platform/Descriptors.h"
#include "platform/Process.h"
#include "support/Files.h"
#include "support/Paths.h"

extern "C" char** environ;

namespace quorvantis {

static ProcessResult runScript(const std::string& script) {
    return runProcess("/bin/sh", {"-c", script, "a b", "$HOME"});
}

TEST(ProcessRunnerTest, CollectsBothStreamsAndTheStatus) {
    const platform::Descriptor notPassedOn(open("/dev/null", O_RDONLY));
    struct Case {
        std::string script;
        int status;
        std::string output;
    };
    for (const auto& [script, status, output] :
         {Case{"echo out; echo err >&2; printf 'out again'; exit 3", 3, "out\nerr\nout again"},
          Case{"printf '%s|%s' \"$0\" \"$1\"", 0, "a b|$HOME"}, Case{"printf 'not UTF-8: \\377'", 0, ""},
          Case{"head -c 10485760 /dev/zero | tr '\\0' x", 0, std::string(10'485'760, 'x')},
          Case{"printf 'last words'; kill -9 $$", 9, "last words"},
          Case{"printf 'last words'; kill -13 $$", 13, "last words"},
          Case{"read line || printf 'no input'", 0, "no input"},
          Case{"exec ls /dev/fd", 0, "0\n1\n2\n3\n"}}) {  // the last is the folder that it lists
        const auto result = runScript(script);
        EXPECT_EQ(result.status, status) << script;
        EXPECT_TRUE(result.output == output) << script << ": " << result.output.substr(0, 80);
    }
}

TEST(ProcessRunnerTest, AddsToThePath) {
    const std::string before = platform::environmentVariable("PATH").value();
    const std::string added = ":/opt/homebrew/bin:/usr/local/bin:" + platform::homeFolder() + "/.local/bin";
    const auto path = [] { return runScript("printf %s \"$PATH\"").output; };
    EXPECT_EQ(path(), before + added);
    setenv("PATH", "", 1);
    EXPECT_EQ(path(), added);
    unsetenv("PATH");
    EXPECT_EQ(path(), "/usr/bin:/bin" + added);
    setenv("PATH", before.c_str(), 1);
}

TEST(ProcessRunnerTest, WorksInAnOddProcess) {
    const auto path = [] { return runScript("printf %s \"$PATH\"").output; };
    EXPECT_EXIT((environ = nullptr, _exit(path().starts_with("/usr/bin:/bin:") ? 0 : 1)),
                testing::ExitedWithCode(0), "");
    EXPECT_EXIT((setenv("HOME", "home", 1), _exit(path().ends_with(absolutePath("home/.local/bin")) ? 0 : 1)),
                testing::ExitedWithCode(0), "");
    EXPECT_EXIT(
        {
            std::signal(SIGCHLD, SIG_IGN);
            try {
                runScript("exit 3");
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
