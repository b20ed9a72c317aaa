#include "StopSignal.h"

#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include "platform/Descriptors.h"

namespace quorvantis::standin {

namespace {

int wakingEnd = -1;  // of the pipe

void wake(int) {
    const int code = errno;
    static_cast<void>(!write(wakingEnd, "", 1));
    errno = code;
}

}  // namespace

int stopSignalDescriptor() {
    static const platform::Pipe pipe;
    wakingEnd = pipe.writing.get();
    fcntl(wakingEnd, F_SETFL, O_NONBLOCK);
    struct sigaction action = {};
    action.sa_handler = wake;
    for (const int signal : {SIGINT, SIGTERM}) sigaction(signal, &action, nullptr);
    return pipe.reading.get();
}

}  // namespace quorvantis::standin
