#pragma once

namespace quorvantis::platform {

// The session-bus signal for a change of an agent's client session. Its only argument is the agent, a string.
inline constexpr char clientSessionPath[] = "/com/quorvantis/ClientSession1";
inline constexpr char clientSessionInterface[] = "com.quorvantis.ClientSession1";
inline constexpr char clientSessionChanged[] = "ClientSessionChanged";

}  // namespace quorvantis::platform
