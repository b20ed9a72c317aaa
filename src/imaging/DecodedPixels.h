#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quorvantis {

/// What decoding a picture tells of it.
struct DecodedPixels {
    std::int64_t width = 0;   // as the file declares it, before any orientation
    std::int64_t height = 0;  // the same
    std::string hash;         // as PixelHasher answers it, of the upright picture

    /// The record that a decoder process writes: "<width> <height> <hash>" and a line feed.
    std::string record() const;
    /// Reads such a record; nothing when it has any other form, or a size beyond the pixel budget.
    static std::optional<DecodedPixels> parse(std::string_view record);
};

/// No record is longer, in bytes: two numbers of 8 digits, 64 of hash, three separators.
inline constexpr std::size_t longestDecodedPixelsRecord = 83;

}  // namespace quorvantis
