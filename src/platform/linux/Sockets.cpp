#include "platform/Sockets.h"

#include <sys/socket.h>

namespace quorvantis::platform {

Descriptor openLocalSocket() {
    return Descriptor(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
}

bool disableBrokenPipeSignal(const Descriptor&) {
    return true;  // each send says MSG_NOSIGNAL
}

std::ptrdiff_t sendSome(const Descriptor& socket, std::string_view bytes) {
    return send(socket.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
}

}  // namespace quorvantis::platform
