#include "platform/Process.h"

#include <array>
#include <cstddef>
#include <cstdlib>
#include <errno.h>
#include <malloc.h>
#include <optional>
#include <pwd.h>
#include <string>
#include <unistd.h>

namespace quorvantis::platform {

std::string homeFolder() {
    if (const char* home = std::getenv("HOME"); home && *home) return home;
    if (const passwd* user = getpwuid(getuid()); user && user->pw_dir && *user->pw_dir) return user->pw_dir;
    return "/";
}

std::string firstArgument() {
    return program_invocation_name;
}

std::optional<std::string> executablePath(pid_t process) {
    std::array<char, 4096> path;  // PATH_MAX, the kernel's limit
    const std::string link = "/proc/" + std::to_string(process) + "/exe";
    const ssize_t length = readlink(link.c_str(), path.data(), path.size());
    if (length < 1) return std::nullopt;
    return std::string(path.data(), static_cast<std::size_t>(length));
}

void keepFreedMemory() {
    constexpr int mebibyte = 1024 * 1024;
    mallopt(M_TRIM_THRESHOLD, 16 * mebibyte);  // twice what a call with a reply of maximum size needs
    mallopt(M_MMAP_THRESHOLD, 4 * mebibyte);   // larger than any single block of such a call
}

}  // namespace quorvantis::platform
