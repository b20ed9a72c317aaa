#pragma once

#include <cstdint>
#include <optional>
#include <span>

namespace quorvantis::decoder {

enum class Format { png, jpeg, gif, webp, tiff, bmp, ico, heif, jpeg2000 };

/// `recognisedFormat` looks at this many bytes of a file's start, fewer when the file is shorter.
inline constexpr std::size_t recognisedBytes = 32;

/// The format that a file's first bytes announce.
std::optional<Format> recognisedFormat(std::span<const std::uint8_t> start);

}  // namespace quorvantis::decoder
