#pragma once

#include <cstdlib>
#include <optional>
#include <string>
#include <sys/types.h>

namespace quorvantis::platform {

/// The environment variable's value at this moment; empty when it is not set.
inline std::optional<std::string> environmentVariable(const char* name) {
    const char* value = std::getenv(name);
    return value ? std::optional<std::string>(value) : std::nullopt;
}

/// The current user's home folder, "/" when neither HOME nor the user database has one. On Linux HOME goes
/// before the database's entry for the real user. On macOS that database goes first, as in the system's own
/// libraries: its entry for the effective user, or for the real one when the effective user is root.
std::string homeFolder();

/// The first argument that this process was started with, as its parent gave it.
std::string firstArgument();

/// The path of the executable that a process runs; empty when the system does not tell.
std::optional<std::string> executablePath(pid_t process);

/// Asks the allocator to keep a few MiB of freed memory. The next call needs what the last one freed; giving
/// the pages back in between costs more than all the rest of a large call.
void keepFreedMemory();

}  // namespace quorvantis::platform
