#include "decoder/ForbiddenCall.h"

#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <fcntl.h>
#include <map>
#include <memory>
#include <seccomp.h>
#include <stdexcept>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quorvantis::decoder {

namespace {

constexpr int callStop = SIGTRAP | 0x80;

/// By thread, its latest system call. A forbidden one is seen to return before the signal that kills.
using Calls = std::map<pid_t, int>;

pid_t startTraced(const std::function<void()>& act) {
    const pid_t child = fork();
    if (child == 0) {
        if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) == 0) raise(SIGSTOP);
        act();
        _exit(0);
    }
    waitpid(child, nullptr, 0);
    constexpr std::intptr_t options =
        PTRACE_O_TRACESYSGOOD | PTRACE_O_TRACECLONE | PTRACE_O_TRACEEXEC | PTRACE_O_EXITKILL;
    if (ptrace(PTRACE_SETOPTIONS, child, nullptr, options) != 0)
        throw std::runtime_error("this system lets nobody trace");
    ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
    return child;
}

void noteCall(pid_t thread, Calls& calls) {
    __ptrace_syscall_info info = {};
    ptrace(PTRACE_GET_SYSCALL_INFO, thread, sizeof info, &info);
    if (info.op == PTRACE_SYSCALL_INFO_ENTRY) calls[thread] = static_cast<int>(info.entry.nr);
}

/// Lets the stopped thread go on, with the signal that stopped it unless that was the trace's own.
void resume(pid_t thread, int signal) {
    const bool own = signal == callStop || signal == SIGTRAP || signal == SIGSTOP;
    ptrace(PTRACE_SYSCALL, thread, nullptr, static_cast<std::intptr_t>(own ? 0 : signal));
}

std::string names(const Calls& calls) {
    std::string all;
    for (const auto& [thread, number] : calls) {
        const std::unique_ptr<char, void (*)(void*)> name(
            seccomp_syscall_resolve_num_arch(SCMP_ARCH_NATIVE, number), &std::free);
        all += (all.empty() ? "" : " ") + (name ? std::string(name.get()) : std::to_string(number));
    }
    return all;
}

}  // namespace

std::string forbiddenCall(const std::function<void()>& act) {
    const pid_t child = startTraced(act);
    Calls calls;
    for (int status = 0;;) {
        const pid_t thread = waitpid(-1, &status, __WALL);
        if (thread < 0) throw std::runtime_error("the traced process is lost");
        if (WIFSTOPPED(status)) {
            if (WSTOPSIG(status) == callStop) noteCall(thread, calls);
            resume(thread, WSTOPSIG(status));
        } else if (thread == child) {
            return WIFSIGNALED(status) && WTERMSIG(status) == SIGSYS ? names(calls) : "";
        } else if (WIFEXITED(status)) {
            calls.erase(thread);
        }
    }
}

std::string forbiddenCall(const std::string& decoder, const std::string& picture) {
    return forbiddenCall([&] {
        dup2(open("/dev/null", O_WRONLY), STDOUT_FILENO);
        const int file = open(picture.c_str(), O_RDONLY);
        if (file != 3) dup2(file, 3);
        execl(decoder.c_str(), decoder.c_str(), nullptr);
    });
}

}  // namespace quorvantis::decoder
