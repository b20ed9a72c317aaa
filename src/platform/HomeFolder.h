#pragma once

#include <string>

namespace quorvantis::platform {

/// The current user's home folder, "/" when nothing tells it. Never fails. On Linux HOME goes before the user
/// database's entry for the real user. On macOS that database goes first, as in the system's own libraries:
/// its entry for the effective user, or for the real one when the effective user is root.
std::string homeFolder();

}  // namespace quorvantis::platform
