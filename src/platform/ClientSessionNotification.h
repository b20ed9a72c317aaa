#pragma once

#include <string>

namespace quorvantis::platform {

/// Notifies the desktop application, if it is listening, that the client session of `agent` has changed.
/// Blocks for at most 100 ms on Linux. Errors are ignored: the notification is optional.
void postClientSessionChanged(const std::string& agent);

}  // namespace quorvantis::platform
