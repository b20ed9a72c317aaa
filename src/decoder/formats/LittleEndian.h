#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace quorvantis::decoder {

/// Reads an unsigned little-endian number of `size` bytes, 1 to 4, at position `at`, which must be in range.
inline std::uint32_t littleEndian(std::span<const std::uint8_t> bytes, std::size_t at, std::size_t size) {
    std::uint32_t number = 0;
    for (std::size_t i = size; i > 0; --i) number = number << 8 | bytes[at + i - 1];
    return number;
}

}  // namespace quorvantis::decoder
