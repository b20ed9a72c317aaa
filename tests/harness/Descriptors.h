#pragma once

#include <fcntl.h>

namespace quorvantis::harness {

/// How many descriptors this process has open, of the first 256.
inline int openDescriptors() {
    int count = 0;
    for (int descriptor = 0; descriptor < 256; ++descriptor) count += fcntl(descriptor, F_GETFD) >= 0;
    return count;
}

}  // namespace quorvantis::harness
