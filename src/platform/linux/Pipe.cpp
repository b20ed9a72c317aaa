#include "platform/Pipe.h"

#include <array>
#include <errno.h>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>

namespace quorvantis::platform {

Pipe::Pipe() {
    std::array<int, 2> ends;
    if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::system_error(errno, std::generic_category());
    reading = Descriptor(ends[0]);
    writing = Descriptor(ends[1]);
}

}  // namespace quorvantis::platform
