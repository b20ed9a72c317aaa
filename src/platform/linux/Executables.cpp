#include "platform/Executables.h"

#include <array>
#include <errno.h>
#include <unistd.h>

namespace quorvantis::platform {

std::string firstArgument() {
    return program_invocation_name;
}

std::optional<std::string> executablePath(pid_t process) {
    std::array<char, 4096> path;  // PATH_MAX: the kernel gives no longer one
    const std::string link = "/proc/" + std::to_string(process) + "/exe";
    const ssize_t length = readlink(link.c_str(), path.data(), path.size());
    if (length < 1) return std::nullopt;
    return std::string(path.data(), static_cast<std::size_t>(length));
}

}  // namespace quorvantis::platform
