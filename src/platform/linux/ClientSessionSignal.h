#pragma once

namespace quorvantis::platform {

// The session-bus signal that says that an agent's client session has changed. Its one argument is the agent,
// a string.
inline constexpr char clientSessionPath[] = "/com/quorvantis/ClientSession1";
inline constexpr char clientSessionInterface[] = "com.quorvantis.ClientSession1";
inline constexpr char clientSessionChanged[] = "ClientSessionChanged";

}  // namespace quorvantis::platform
