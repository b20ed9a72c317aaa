#include "platform/Pipe.h"

#include <array>
#include <errno.h>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>

namespace quorvantis::platform {

// There is no pipe2. Until the marks are set, a child that another thread starts could inherit the pipe; one
// that Spawn starts does not, because it gets POSIX_SPAWN_CLOEXEC_DEFAULT.
Pipe::Pipe() {
    std::array<int, 2> ends;
    if (pipe(ends.data()) != 0) throw std::system_error(errno, std::generic_category());
    reading = Descriptor(ends[0]);
    writing = Descriptor(ends[1]);
    for (const int end : ends) fcntl(end, F_SETFD, FD_CLOEXEC);
}

}  // namespace quorvantis::platform
