#pragma once

namespace quorvantis::platform {

/// The name of the distributed notification for a change of an agent's client session. Its object is the
/// agent.
inline constexpr char clientSessionChanged[] = "com.quorvantis.client-session-changed";

}  // namespace quorvantis::platform
