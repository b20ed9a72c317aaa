#include "platform/Descriptors.h"

#include <array>
#include <errno.h>
#include <fcntl.h>
#include <sys/socket.h>
#include <system_error>
#include <unistd.h>

namespace quorvantis::platform {

// There is no pipe2. Before FD_CLOEXEC is set, a child started by another thread could inherit the pipe; not
// one started by Spawn, which sets POSIX_SPAWN_CLOEXEC_DEFAULT.
Pipe::Pipe() {
    std::array<int, 2> ends;
    if (pipe(ends.data()) != 0) throw std::system_error(errno, std::generic_category());
    reading = Descriptor(ends[0]);
    writing = Descriptor(ends[1]);
    for (const int end : ends) fcntl(end, F_SETFD, FD_CLOEXEC);
}

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
