#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "platform/SHA256.h"

namespace quorvantis {

/// The maximum number of pixels of a picture, both as its file declares it and as it is hashed.
inline constexpr std::int64_t pixelBudget = 60'000'000;

/// Whether both sides are positive and their product is at most `pixelBudget`.
bool isWithinPixelBudget(std::int64_t width, std::int64_t height);

/// Computes the pixel hash of an upright picture: the SHA-256 of the text "<width>x<height>:rgba8-srgb:"
/// followed by the rows, top row first. A pixel is four bytes in sRGB: red, green and blue, premultiplied by
/// alpha, then alpha.
class PixelHasher {
  public:
    /// The size is that of the upright picture in pixels and must be within the budget.
    PixelHasher(std::int64_t width, std::int64_t height);

    /// Hashes the next pixels; a call may end within a row.
    void update(std::span<const std::byte> pixels);

    /// Returns the hash as 64 lower-case hexadecimal digits; empty unless exactly the picture's number of
    /// bytes was hashed. Call it once, last.
    std::optional<std::string> finish();

  private:
    platform::SHA256 hash_;
    std::uint64_t missing_;  // number of bytes still to come; wraps around if there were too many
};

}  // namespace quorvantis
