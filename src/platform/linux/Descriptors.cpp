#include "platform/Descriptors.h"

#include <array>
#include <cstddef>
#include <errno.h>
#include <fcntl.h>
#include <string_view>
#include <sys/socket.h>
#include <system_error>

namespace quorvantis::platform {

Pipe::Pipe() {
    std::array<int, 2> ends;
    if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::system_error(errno, std::generic_category());
    reading = Descriptor(ends[0]);
    writing = Descriptor(ends[1]);
}

Descriptor openLocalSocket() {
    return Descriptor(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
}

bool disableBrokenPipeSignal(const Descriptor&) {
    return true;  // `sendSome` passes MSG_NOSIGNAL
}

std::ptrdiff_t sendSome(const Descriptor& socket, std::string_view bytes) {
    return send(socket.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
}

}  // namespace quorvantis::platform
