#pragma once

#include <string>

namespace quorvantis::platform {

/// Tells the desktop application, if one listens, that the client session of `agent` has changed. On
/// Linux waits 100 ms at the longest; never fails: nobody depends on the message being heard.
void postClientSessionChanged(const std::string& agent);

}  // namespace quorvantis::platform
