#pragma once

#include <cstddef>
#include <string_view>

#include "platform/Descriptor.h"

namespace quorvantis::platform {

/// A new AF_UNIX stream socket that no child process inherits; none when the system refuses one (errno says
/// why).
Descriptor openLocalSocket();

/// Arranges that `sendSome` on this socket never raises SIGPIPE. False when the system refuses.
bool disableBrokenPipeSignal(const Descriptor& socket);

/// Sends at most `bytes.size()` bytes, without SIGPIPE. Answers the count sent, or a negative number with
/// errno set.
std::ptrdiff_t sendSome(const Descriptor& socket, std::string_view bytes);

}  // namespace quorvantis::platform
