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
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "decoder/process/Limits.h"
#include "platform/Descriptors.h"
#include "support/Files.h"

namespace quorvantis::decoder {

static void enter() {
    enterSandbox(limits(1 << 20, false));
}

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
                 {"shared memory",
                  [] { mmap(nullptr, 4096, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0); }},
                 {"whether a file exists", [] { access("/etc/passwd", F_OK); }},
                 {"about a file",
                  [] {
                      struct stat status;
                      stat("/etc/passwd", &status);
                  }},
                 {"memory made executable", [] { mprotect(nullptr, 4096, PROT_EXEC); }},
                 {"signal", [] { kill(1, 0); }},
                 {"trace", [] { syscall(SYS_ptrace, 0, 0, 0, 0); }},
                 {"limits", [] { syscall(SYS_prlimit64, 0, 0, nullptr, nullptr); }},
                 {"outlive the parent", [] { syscall(SYS_prctl, PR_SET_PDEATHSIG, 0, 0, 0, 0); }}};
    for (const auto& [what, act] : cases) {
        const auto reachOut = [&reach = act] { enter(), reach(), _exit(0); };
        EXPECT_EXIT(reachOut(), testing::KilledBySignal(SIGSYS), "") << what;
    }
}

TEST(SandboxTest, LeavesWhatDecodingNeeds) {
    const auto work = [] {
        enter();
        int sum = 0;
        std::thread([&] { sum = 7; }).join();
        if (write(STDOUT_FILENO, "", 0) == 0) _exit(sum);
    };
    EXPECT_EXIT(work(), testing::ExitedWithCode(7), "");
}

TEST(SandboxTest, BoundsMemoryAndTime) {
    constexpr std::size_t mebibyte = 1 << 20;
    for (const std::uint64_t size : {0U, 57U, 1024U}) {
        EXPECT_EQ(limits(size, true).memory, 64 * mebibyte);
        EXPECT_EQ(limits(size, false).time, std::chrono::milliseconds(500));
    }
    EXPECT_EQ(limits(1ULL << 40, false).memory * 4, limits(1ULL << 40, true).memory);
    EXPECT_EQ(limits(1ULL << 40, true).memory, 1536 * mebibyte);
    const auto fill = [] {
        enterSandbox({64 * mebibyte, std::chrono::seconds(1)});
        const auto taken = [](std::size_t size) {
            return mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0) !=
                   MAP_FAILED;
        };
        _exit(taken(60 * mebibyte) && !taken(512 * mebibyte) ? 0 : 1);
    };
    EXPECT_EXIT(fill(), testing::ExitedWithCode(0), "");
    const auto spin = [] {
        enterSandbox({64 * mebibyte, std::chrono::milliseconds(10)});
        for (volatile bool on = true; on;) continue;
    };
    EXPECT_EXIT(spin(), testing::KilledBySignal(SIGPROF), "");
}

TEST(SandboxTest, HasLimitsAndEndsWithItsParent) {
    platform::Pipe pipe;
    const pid_t parent = fork();
    if (parent == 0) {
        if (fork() != 0) pause();
        const pid_t self = getpid();
        enter();
        const auto written = write(pipe.writing.get(), &self, sizeof self);
        while (written == sizeof self) sched_yield();
    }
    pipe.writing = {};
    pid_t decoder = 0;
    ASSERT_EQ(read(pipe.reading.get(), &decoder, sizeof decoder), ssize_t{sizeof decoder});
    const std::string limits = readFile("/proc/" + std::to_string(decoder) + "/limits");
    EXPECT_EQ(limits.find("Max cpu time              unlimited"), limits.npos);
    for (const std::string limit : {"Max core file size        0                    0  ",
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
