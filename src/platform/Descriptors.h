#pragma once

#include <cstddef>
#include <string_view>
#include <unistd.h>
#include <utility>

namespace quorvantis::platform {

/// Owns a file descriptor, or none (-1). The destructor closes it.
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
    /// Gives up the descriptor, which the caller then closes.
    int release() { return std::exchange(descriptor_, -1); }

  private:
    int descriptor_ = -1;
};

/// A pipe with close-on-exec set on both ends.
struct Pipe {
    /// Creates a pipe. Throws std::system_error.
    Pipe();

    Descriptor reading;
    Descriptor writing;
};

/// Opens an AF_UNIX stream socket with close-on-exec set. On failure returns an empty descriptor and sets
/// errno.
Descriptor openLocalSocket();

/// Makes `sendSome` on this socket fail instead of raising SIGPIPE. Returns false on failure.
bool disableBrokenPipeSignal(const Descriptor& socket);

/// Sends at most `bytes.size()` bytes without raising SIGPIPE. Returns the number sent, or a negative number
/// and sets errno.
std::ptrdiff_t sendSome(const Descriptor& socket, std::string_view bytes);

}  // namespace quorvantis::platform
