#pragma once

#include <chrono>
#include <cstdint>

namespace quorvantis::decoder {

/// What decoding one picture may cost.
struct Limits {
    std::uint64_t memory;            // bytes, besides what is in use already
    std::chrono::milliseconds time;  // of processor time
};

/// Pictures are decoded up to four at a time with the limits of a first try, which nearly all keep; what they
/// leave undone is tried again alone. So one call never takes more than 1.5 GiB, and a picture that takes
/// long costs the others little. A small file has a smaller limit: whatever it claims, it holds few pixels.
Limits limits(std::uint64_t fileSize, bool alone);

}  // namespace quorvantis::decoder
