#pragma once

namespace quorvantis::platform {

/// The name of the distributed notification that says that an agent's client session has changed. Its object
/// is the agent.
inline constexpr char clientSessionChanged[] = "com.quorvantis.client-session-changed";

}  // namespace quorvantis::platform
