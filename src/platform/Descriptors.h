#pragma once

#include <cstddef>
#include <string_view>
#include <unistd.h>
#include <utility>

namespace quorvantis::platform {

/// Owns one file descriptor and closes it; -1 stands for none.
class Descriptor {
  public:
    Descriptor() = default;
    explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
    Descriptor(Descriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(descriptor_, other.descriptor_);
        return *this;
    }
    ~Descriptor() {
        if (descriptor_ >= 0) close(descriptor_);
    }

    explicit operator bool() const { return descriptor_ >= 0; }
    int get() const { return descriptor_; }

  private:
    int descriptor_ = -1;
};

/// A new pipe that no child process inherits, unless it is handed over.
struct Pipe {
    /// Throws std::system_error.
    Pipe();

    Descriptor reading;
    Descriptor writing;
};

/// Opens an AF_UNIX stream socket that no child process inherits. Empty when the system refuses one; errno
/// says why.
Descriptor openLocalSocket();

/// Makes `sendSome` on this socket fail instead of raising SIGPIPE. Returns false when the system refuses.
bool disableBrokenPipeSignal(const Descriptor& socket);

/// Sends at most `bytes.size()` bytes, without SIGPIPE. Returns the count sent, or a negative number with
/// errno set.
std::ptrdiff_t sendSome(const Descriptor& socket, std::string_view bytes);

}  // namespace quorvantis::platform
