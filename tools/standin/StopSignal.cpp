#include "StopSignal.h"

#include <array>
#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include "support/Files.h"

namespace quorvantis::standin {

namespace {

std::array<int, 2> ends;  // of the pipe; they live as long as the process

void wake(int) {
    const int code = errno;
    static_cast<void>(!write(ends[1], "", 1));
    errno = code;
}

}  // namespace

int stopSignalDescriptor() {
    if (pipe(ends.data()) != 0) throw FileError::system(errno);
    for (const int end : ends) fcntl(end, F_SETFD, FD_CLOEXEC);
    fcntl(ends[1], F_SETFL, O_NONBLOCK);
    struct sigaction action = {};
    action.sa_handler = wake;
    for (const int signal : {SIGINT, SIGTERM}) sigaction(signal, &action, nullptr);
    return ends[0];
}

}  // namespace quorvantis::standin
