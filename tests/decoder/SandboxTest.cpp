#include "decoder/Sandbox.h"

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

namespace quorvantis::decoder {

TEST(SandboxTest, KillsWhoReachesOut) {
    GTEST_FLAG_SET(death_test_style, "fast");
    struct Case {
        const char* what;
        std::function<void()> act;
    };
    const std::vector<Case> cases = {
        {"open", [] { open("/etc/passwd", O_RDONLY); }},
        {"write a file", [] { open("/tmp/quorvantis-sandbox", O_WRONLY | O_CREAT, 0600); }},
        {"socket", [] { socket(AF_UNIX, SOCK_STREAM, 0); }},
        {"network", [] { socket(AF_INET, SOCK_STREAM, 0); }},
        {"new process", [] { syscall(SYS_clone, SIGCHLD, 0, 0, 0, 0); }},
        {"vfork", [] { syscall(SYS_clone, CLONE_VM | CLONE_VFORK | SIGCHLD, 0, 0, 0, 0); }},
        {"program", [] { execl("/bin/true", "true", nullptr); }},
        {"code", [] { mmap(nullptr, 4096, PROT_READ | PROT_EXEC, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0); }},
        {"signal", [] { kill(getppid(), 0); }},
        {"trace", [] { syscall(SYS_ptrace, 0, 0, 0, 0); }},
        {"limits", [] { syscall(SYS_prlimit64, 0, 0, nullptr, nullptr); }}};
    for (const auto& [what, act] : cases)
        EXPECT_EXIT((enterSandbox(), act(), _exit(0)), testing::KilledBySignal(SIGSYS), "") << what;
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
