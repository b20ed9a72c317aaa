#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quorvantis {

/// The result of decoding a picture.
struct DecodedPixels {
    std::int64_t width = 0;   // in pixels, as the file declares it, before any orientation is applied
    std::int64_t height = 0;  // likewise
    std::string hash;         // PixelHasher's result for the upright picture

    /// The line by which a decoder process reports the result: "<width> <height> <hash>" and a line feed.
    std::string record() const;
    /// Parses such a record; empty if it is malformed or the size is not within the pixel budget.
    static std::optional<DecodedPixels> parse(std::string_view record);

    /// In bytes: two numbers of up to 8 digits, 64 digits of hash and three separators.
    static constexpr std::size_t maximumRecordSize = 83;
};

}  // namespace quorvantis
