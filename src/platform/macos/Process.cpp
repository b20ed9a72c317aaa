#include "platform/Process.h"

#include <array>
#include <crt_externs.h>
#include <cstring>
#include <libproc.h>
#include <pwd.h>
#include <unistd.h>

namespace quorvantis::platform {

std::string homeFolder() {
    // As Core Foundation: a program that runs as root for a user belongs to that user.
    const uid_t effective = geteuid();
    const passwd* const user = getpwuid(effective == 0 ? getuid() : effective);
    if (user && user->pw_dir && *user->pw_dir) return user->pw_dir;
    if (const char* home = std::getenv("HOME"); home && *home) return home;
    return "/";
}

std::string firstArgument() {
    const char* const argument = (*_NSGetArgv())[0];
    return argument ? argument : "";
}

std::optional<std::string> executablePath(pid_t process) {
    std::array<char, PROC_PIDPATHINFO_MAXSIZE> path = {};
    const int length = proc_pidpath(process, path.data(), static_cast<std::uint32_t>(path.size()));
    if (length < 1) return std::nullopt;
    return std::string(path.data(), strnlen(path.data(), static_cast<std::size_t>(length)));
}

void keepFreedMemory() {}  // the system's allocator does this by default

}  // namespace quorvantis::platform
