#include "platform/Executables.h"

#include <array>
#include <crt_externs.h>
#include <cstring>
#include <libproc.h>

namespace quorvantis::platform {

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

}  // namespace quorvantis::platform
