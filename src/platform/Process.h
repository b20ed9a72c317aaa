#pragma once

#include <cstdlib>
#include <optional>
#include <string>
#include <sys/types.h>

namespace quorvantis::platform {

/// The current value of an environment variable; empty if it is not set.
inline std::optional<std::string> environmentVariable(const char* name) {
    const char* value = std::getenv(name);
    return value ? std::optional<std::string>(value) : std::nullopt;
}

/// The current user's home folder; "/" if neither HOME nor the user database has one. Linux prefers HOME to
/// the database's entry for the real user. macOS, like the system's own libraries, prefers the database: its
/// entry for the effective user, or for the real user if the effective one is root.
std::string homeFolder();

/// This process's argv[0], as passed by its parent.
std::string firstArgument();

/// The path of the executable that a process is running; empty if there is no such process or it cannot be
/// inspected.
std::optional<std::string> executablePath(pid_t process);

/// Makes the allocator keep a few MiB of freed memory for the next call. Returning the pages to the system
/// after each call takes longer than the rest of a large call.
void keepFreedMemory();

}  // namespace quorvantis::platform
