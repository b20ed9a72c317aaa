#pragma once

#include "platform/Descriptor.h"

namespace quorvantis::platform {

/// A new pipe, which no child process inherits of itself.
struct Pipe {
    /// Throws std::system_error.
    Pipe();

    Descriptor reading;
    Descriptor writing;
};

}  // namespace quorvantis::platform
