#include "decoder/process/Sandbox.h"

#include <csignal>
#include <fcntl.h>
#include <functional>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "decoder/ForbiddenCall.h"

namespace quorvantis::decoder {

TEST(SandboxTest, KillsWhoReachesOut) {
    struct Case {
        const char* call;
        std::function<void()> act;
    };
    const std::vector<Case> cases = {
        {"openat", [] { open("/etc/passwd", O_RDONLY); }},
        {"openat", [] { open("/tmp/quorvantis-sandbox", O_WRONLY | O_CREAT, 0600); }},
        {"socket", [] { socket(AF_UNIX, SOCK_STREAM, 0); }},
        {"socket", [] { socket(AF_INET, SOCK_STREAM, 0); }},
        {"clone", [] { syscall(SYS_clone, SIGCHLD, 0, 0, 0, 0); }},
        {"clone", [] { syscall(SYS_clone, CLONE_VM | CLONE_VFORK | SIGCHLD, 0, 0, 0, 0); }},
        {"execve", [] { execl("/bin/true", "true", nullptr); }},
        {"mmap", [] { mmap(nullptr, 4096, PROT_READ | PROT_EXEC, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0); }},
        {"kill", [] { kill(1, 0); }},
        {"ptrace", [] { syscall(SYS_ptrace, 0, 0, 0, 0); }},
        {"prlimit64", [] { syscall(SYS_prlimit64, 0, 0, nullptr, nullptr); }}};
    for (const auto& test : cases) EXPECT_EQ(forbiddenCall([&] { enterSandbox(), test.act(); }), test.call);
    EXPECT_EQ(forbiddenCall([] { enterSandbox(); }), "");
    EXPECT_EQ(forbiddenCall([] { raise(SIGKILL); }), "");
}

TEST(SandboxTest, LeavesWhatDecodingNeeds) {
    GTEST_FLAG_SET(death_test_style, "fast");
    const auto work = [] {
        enterSandbox();
        int sum = 0;
        std::thread([&] { sum = 7; }).join();
        if (write(STDOUT_FILENO, "", 0) == 0) _exit(sum);
    };
    EXPECT_EXIT(work(), testing::ExitedWithCode(7), "");
}

}  // namespace quorvantis::decoder
