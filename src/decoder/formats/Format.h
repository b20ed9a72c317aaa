#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace quorvantis::decoder {

enum class Format { png, jpeg, gif, webp, tiff, bmp, ico, heif, jpeg2000 };

/// The number of bytes that `recognisedFormat` needs.
inline constexpr std::size_t recognisedBytes = 32;

/// Recognises the format by the first `recognisedBytes` bytes of the file, or all of a shorter file; empty if
/// it is unknown.
std::optional<Format> recognisedFormat(std::span<const std::uint8_t> start);

}  // namespace quorvantis::decoder
