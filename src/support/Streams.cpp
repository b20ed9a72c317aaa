#include "support/Streams.h"

#include <cstdlib>
#include <cstring>
#include <errno.h>
#include <fcntl.h>
#include <new>
#include <optional>
#include <poll.h>
#include <string_view>
#include <unistd.h>

namespace quorvantis {

namespace {

constexpr std::size_t defaultCapacity = 65536;  // the capacity of a pipe

/// Whether the read or write that has just failed can be repeated. If it would have blocked, waits until the
/// descriptor is ready.
bool canRetry(int descriptor, short event) {
    if (errno == EINTR) return true;
    if (errno != EAGAIN && errno != EWOULDBLOCK) return false;
    pollfd waiting = {.fd = descriptor, .events = event, .revents = 0};
    return poll(&waiting, 1, -1) > 0 || errno == EINTR;
}

}  // namespace

void reserveStandardStreams() {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (fcntl(stream, F_GETFD) < 0) open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
}

bool writeStream(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && !canRetry(descriptor, POLLOUT)) return false;
        if (written > 0) bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

void breakOutput(int descriptor) {
    const int unwritable = open("/dev/null", O_RDONLY | O_CLOEXEC);
    unwritable < 0 ? close(descriptor) : dup2(unwritable, descriptor);
    if (unwritable >= 0) close(unwritable);
}

std::optional<std::string_view> LineReader::next() {
    for (;;) {
        if (searched_ < end_) {
            const void* lineFeed = std::memchr(buffer_.get() + searched_, '\n', end_ - searched_);
            if (lineFeed)
                return take(static_cast<std::size_t>(static_cast<const char*>(lineFeed) - buffer_.get()));
            searched_ = end_;
        }
        if (fill()) continue;
        if (start_ == end_) return std::nullopt;
        return take(end_);
    }
}

/// Reads more bytes into the buffer. Returns false at the end of the stream or on failure.
bool LineReader::fill() {
    if (start_ > 0) {
        std::memmove(buffer_.get(), buffer_.get() + start_, end_ - start_);
        end_ -= start_;
        searched_ -= start_;
        start_ = 0;
    }
    const bool oversized = end_ == 0 && capacity_ > defaultCapacity;  // after a long line
    if (end_ == capacity_ || oversized) {
        const std::size_t capacity = oversized   ? defaultCapacity
                                     : capacity_ ? capacity_ * 2
                                                 : defaultCapacity;
        char* moved = static_cast<char*>(std::realloc(buffer_.get(), capacity));
        if (!moved) throw std::bad_alloc();
        static_cast<void>(buffer_.release());
        buffer_.reset(moved);
        capacity_ = capacity;
    }
    for (;;) {
        const ssize_t count = read(descriptor_, buffer_.get() + end_, capacity_ - end_);
        if (count < 0 && canRetry(descriptor_, POLLIN)) continue;
        if (count <= 0) return false;
        end_ += static_cast<std::size_t>(count);
        return true;
    }
}

/// Returns the line that ends at `end`, the position of a line feed or the end of the stream.
std::string_view LineReader::take(std::size_t end) {
    std::string_view line(buffer_.get() + start_, end - start_);
    const bool hasLineFeed = end < end_;
    start_ = searched_ = hasLineFeed ? end + 1 : end;
    if (hasLineFeed && line.ends_with('\r')) line.remove_suffix(1);
    return line;
}

}  // namespace quorvantis
