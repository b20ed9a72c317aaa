#include "decoder/process/Sandbox.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <fcntl.h>
#include <memory>
#include <poll.h>
#include <sched.h>
#include <seccomp.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/time.h>
#include <time.h>
#include <unistd.h>

#include "decoder/picture/GiveUp.h"
#include "decoder/process/Limits.h"
#include "platform/Descriptors.h"

namespace quorvantis::decoder {

namespace {

constexpr unsigned longestLife = 60;  // seconds by the clock

// The address sanitizer needs more memory and time, and looks at its own threads and stacks.
constexpr bool isSanitized = QUORVANTIS_SANITIZED;
constexpr rlim_t sanitizersMemory = isSanitized ? 1UL << 28 : 0;
constexpr int sanitizersTime = isSanitized ? 20 : 1;

constexpr std::array decodingCalls = {
    SCMP_SYS(pread64),       SCMP_SYS(write),        SCMP_SYS(mremap), SCMP_SYS(munmap),     SCMP_SYS(brk),
    SCMP_SYS(madvise),       SCMP_SYS(futex),        SCMP_SYS(exit),   SCMP_SYS(exit_group),
    SCMP_SYS(sysinfo),                                // qsort asks for the size of the memory
    SCMP_SYS(clock_gettime), SCMP_SYS(gettimeofday),  // where the clock cannot be read without a call
};
constexpr std::array threadCalls = {SCMP_SYS(set_robust_list), SCMP_SYS(rseq), SCMP_SYS(rt_sigprocmask),
                                    SCMP_SYS(rt_sigaction), SCMP_SYS(sched_getaffinity)};
constexpr std::array sanitizersCalls = {SCMP_SYS(sigaltstack), SCMP_SYS(gettid), SCMP_SYS(sched_yield)};

/// The system calls that remain allowed.
class AllowList {
  public:
    AllowList() : filter_(seccomp_init(SCMP_ACT_KILL_PROCESS), &seccomp_release) {
        complete_ = seccomp_attr_set(filter_.get(), SCMP_FLTATR_ACT_BADARCH, SCMP_ACT_KILL_PROCESS) == 0;
    }

    template <class... Conditions>
    void allow(int call, Conditions... conditions) {
        add(SCMP_ACT_ALLOW, call, conditions...);
    }
    template <class... Conditions>
    void refuse(int call, int error, Conditions... conditions) {
        add(SCMP_ACT_ERRNO(static_cast<std::uint32_t>(error)), call, conditions...);
    }
    bool load() { return complete_ && seccomp_load(filter_.get()) == 0; }

  private:
    template <class... Conditions>
    void add(std::uint32_t action, int call, Conditions... conditions) {
        if (seccomp_rule_add(filter_.get(), action, call, sizeof...(conditions), conditions...) != 0)
            complete_ = false;
    }

    std::unique_ptr<void, decltype(&seccomp_release)> filter_;
    bool complete_ = false;
};

void limit(int resource, rlim_t value) {
    const auto kind = static_cast<__rlimit_resource>(resource);
    rlimit limits;
    if (getrlimit(kind, &limits) != 0) giveUp();
    limits.rlim_max = std::min(limits.rlim_max, value);  // one that is lower already cannot be raised
    limits.rlim_cur = limits.rlim_max;
    if (setrlimit(kind, &limits) != 0) giveUp();
}

/// The bytes of memory that count towards RLIMIT_DATA (proc(5), statm).
rlim_t dataInUse() {
    std::array<char, 128> text = {};
    const platform::Descriptor file(open("/proc/self/statm", O_RDONLY | O_CLOEXEC));
    unsigned long pages = 0;
    if (read(file.get(), text.data(), text.size() - 1) > 0)
        static_cast<void>(std::sscanf(text.data(), "%*s %*s %*s %*s %*s %lu", &pages));
    return pages * static_cast<rlim_t>(sysconf(_SC_PAGESIZE));
}

void limitTime(std::chrono::milliseconds time) {
    using namespace std::chrono;
    const auto whole = duration_cast<seconds>(time);
    const itimerval timer = {{}, {whole.count(), duration_cast<microseconds>(time - whole).count()}};
    if (setitimer(ITIMER_PROF, &timer, nullptr) != 0) giveUp();
    // A process can ignore the timer's signal, but not this limit.
    limit(RLIMIT_CPU, static_cast<rlim_t>(ceil<seconds>(time).count()));
    alarm(longestLife);
}

void setLimits(const Limits& limits) {
    limitTime(limits.time * sanitizersTime);
    limit(RLIMIT_DATA, dataInUse() + limits.memory + sanitizersMemory);
    limit(RLIMIT_CORE, 0);
    limit(RLIMIT_FSIZE, 0);
    limit(RLIMIT_NOFILE, 0);
}

void allowThreads(AllowList& list) {
    for (const int call : threadCalls) list.allow(call);
    list.allow(SCMP_SYS(prctl), SCMP_A0(SCMP_CMP_EQ, PR_SET_NAME));
    // The flags of clone3 are out of a filter's sight; the C library falls back on clone.
    list.refuse(SCMP_SYS(clone3), ENOSYS);
    constexpr std::uint64_t threadFlags = CLONE_VM | CLONE_FS | CLONE_FILES | CLONE_SIGHAND | CLONE_THREAD |
                                          CLONE_SYSVSEM | CLONE_SETTLS | CLONE_PARENT_SETTID |
                                          CLONE_CHILD_CLEARTID;  // those of pthread_create in glibc
    list.allow(SCMP_SYS(clone), SCMP_A0(SCMP_CMP_EQ, threadFlags));
}

void filterCalls() {
    AllowList list;
    for (const int call : decodingCalls) list.allow(call);
    if (isSanitized)
        for (const int call : sanitizersCalls) list.allow(call);
    // Shared memory would not count towards the limit.
    list.allow(SCMP_SYS(mmap), SCMP_A2(SCMP_CMP_MASKED_EQ, PROT_EXEC, 0),
               SCMP_A3(SCMP_CMP_MASKED_EQ, MAP_SHARED, 0));
    list.allow(SCMP_SYS(mprotect), SCMP_A2(SCMP_CMP_MASKED_EQ, PROT_EXEC, 0));
    allowThreads(list);
    if (!list.load()) giveUp();
}

/// Makes this process end with its parent. The parent may have died before the call, which the output then
/// shows: the pipe has no reader.
void endWithParent() {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    pollfd output = {.fd = STDOUT_FILENO, .events = POLLOUT, .revents = 0};
    if (poll(&output, 1, 0) > 0 && (output.revents & POLLERR)) giveUp();
}

/// When memory runs out, the kernel shall end a decoder before anything of the user's (proc(5)).
void beFirstToGo() {
    const platform::Descriptor score(open("/proc/self/oom_score_adj", O_WRONLY | O_CLOEXEC));
    static_cast<void>(!write(score.get(), "1000", 4));
}

}  // namespace

void enterSandbox(const Limits& limits) {
    tzset();  // lcms2 dates the profiles that it makes: read the time zone while files can be opened
    endWithParent();
    beFirstToGo();
    setLimits(limits);
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0) giveUp();
    const bool kernelFilters = prctl(PR_GET_SECCOMP, 0, 0, 0, 0) >= 0;
    if (kernelFilters) filterCalls();
}

}  // namespace quorvantis::decoder
