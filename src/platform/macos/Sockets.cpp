#include "platform/Sockets.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace quorvantis::platform {

Descriptor openLocalSocket() {
    Descriptor opened(socket(AF_UNIX, SOCK_STREAM, 0));
    if (opened) fcntl(opened.get(), F_SETFD, FD_CLOEXEC);
    return opened;
}

bool disableBrokenPipeSignal(const Descriptor& socket) {
    const int yes = 1;
    return setsockopt(socket.get(), SOL_SOCKET, SO_NOSIGPIPE, &yes, sizeof yes) == 0;
}

std::ptrdiff_t sendSome(const Descriptor& socket, std::string_view bytes) {
    return write(socket.get(), bytes.data(), bytes.size());
}

}  // namespace quorvantis::platform
