#pragma once

#include <string>

namespace quorvantis::platform {

/// The current user's home folder. Reads the environment and the user database; never
/// fails.
std::string homeFolder();

}  // namespace quorvantis::platform
