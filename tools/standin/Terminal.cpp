#include "Terminal.h"

#include <array>
#include <cstdio>
#include <ctime>
#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <string_view>
#include <unistd.h>

#include "platform/Descriptors.h"

namespace quorvantis::standin {

namespace {

int signalPipe = -1;  // its writing end

void handleSignal(int) {
    const int code = errno;
    static_cast<void>(!write(signalPipe, "", 1));
    errno = code;
}

}  // namespace

void log(std::string_view line) {
    const std::time_t now = std::time(nullptr);
    std::tm local;
    std::array<char, 16> time;
    std::strftime(time.data(), time.size(), "%H:%M:%S", localtime_r(&now, &local));
    std::printf("%s  %.*s\n", time.data(), static_cast<int>(line.size()), line.data());
    std::fflush(stdout);
}

int stopSignalDescriptor() {
    static const platform::Pipe pipe;
    signalPipe = pipe.writing.get();
    fcntl(signalPipe, F_SETFL, O_NONBLOCK);
    struct sigaction action = {};
    action.sa_handler = handleSignal;
    for (const int signal : {SIGINT, SIGTERM}) sigaction(signal, &action, nullptr);
    return pipe.reading.get();
}

}  // namespace quorvantis::standin
