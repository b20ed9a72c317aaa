#pragma once

#include <optional>
#include <string>
#include <sys/types.h>

namespace quorvantis::platform {

/// The first argument that this process was started with, as its parent gave it.
std::string firstArgument();

/// The path of the executable that a process runs, as the system tells it; none when the system does not
/// tell.
std::optional<std::string> executablePath(pid_t process);

}  // namespace quorvantis::platform
