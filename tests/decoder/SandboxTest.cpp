#include "decoder/process/Sandbox.h"

#include <csignal>
#include <fcntl.h>
#include <functional>
#include <gtest/gtest.h>
#include <poll.h>
#include <sched.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "platform/Descriptors.h"
#include "support/Files.h"

namespace quorvantis::decoder {

TEST(SandboxTest, KillsWhoReachesOut) {
    const struct {
        const char* what;
        std::function<void()> act;
    } cases[] = {{"read a file", [] { open("/etc/passwd", O_RDONLY); }},
                 {"make a file", [] { open("/tmp/quorvantis-sandbox", O_WRONLY | O_CREAT, 0600); }},
                 {"local socket", [] { socket(AF_UNIX, SOCK_STREAM, 0); }},
                 {"network", [] { socket(AF_INET, SOCK_STREAM, 0); }},
                 {"process", [] { syscall(SYS_clone, SIGCHLD, 0, 0, 0, 0); }},
                 {"process in the same memory",
                  [] { syscall(SYS_clone, CLONE_VM | CLONE_VFORK | SIGCHLD, 0, 0, 0, 0); }},
                 {"program", [] { execl("/bin/true", "true", nullptr); }},
                 {"executable memory",
                  [] { mmap(nullptr, 4096, PROT_READ | PROT_EXEC, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0); }},
                 {"memory made executable", [] { mprotect(nullptr, 4096, PROT_EXEC); }},
                 {"signal", [] { kill(1, 0); }},
                 {"trace", [] { syscall(SYS_ptrace, 0, 0, 0, 0); }},
                 {"limits", [] { syscall(SYS_prlimit64, 0, 0, nullptr, nullptr); }},
                 {"outlive the parent", [] { syscall(SYS_prctl, PR_SET_PDEATHSIG, 0, 0, 0, 0); }}};
    for (const auto& [what, act] : cases) {
        const auto reachOut = [&act = act] { enterSandbox(), act(), _exit(0); };
        EXPECT_EXIT(reachOut(), testing::KilledBySignal(SIGSYS), "") << what;
    }
}

TEST(SandboxTest, LeavesWhatDecodingNeeds) {
    const auto work = [] {
        enterSandbox();
        int sum = 0;
        std::thread([&] { sum = 7; }).join();
        if (write(STDOUT_FILENO, "", 0) == 0) _exit(sum);
    };
    EXPECT_EXIT(work(), testing::ExitedWithCode(7), "");
}

TEST(SandboxTest, HasLimitsAndEndsWithItsParent) {
    platform::Pipe pipe;
    const pid_t parent = fork();
    if (parent == 0) {
        if (fork() != 0) pause();
        const pid_t self = getpid();
        enterSandbox();
        const auto written = write(pipe.writing.get(), &self, sizeof self);
        while (written == sizeof self) sched_yield();
    }
    pipe.writing = {};
    pid_t decoder = 0;
    ASSERT_EQ(read(pipe.reading.get(), &decoder, sizeof decoder), ssize_t{sizeof decoder});
    const std::string limits = readFile("/proc/" + std::to_string(decoder) + "/limits");
    for (const std::string limit : {"Max cpu time              60                   60  ",
                                    "Max core file size        0                    0  ",
                                    "Max open files            0                    0  ",
                                    "Max file size             0                    0  "})
        EXPECT_NE(limits.find(limit), limits.npos) << limit;
    kill(parent, SIGKILL);
    waitpid(parent, nullptr, 0);
    pollfd end = {.fd = pipe.reading.get(), .events = POLLIN, .revents = 0};
    EXPECT_EQ(poll(&end, 1, 10'000), 1) << "it outlives its parent";
    kill(decoder, SIGKILL);
}

}  // namespace quorvantis::decoder
