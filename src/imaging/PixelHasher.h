#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "platform/SHA256.h"

namespace quorvantis {

/// The most pixels that a picture may have, as its file declares it and as it is hashed.
inline constexpr std::int64_t pixelBudget = 60'000'000;

/// Whether both sides are positive and their product is at most `pixelBudget`.
bool isWithinPixelBudget(std::int64_t width, std::int64_t height);

/// Computes the pixel hash of an upright picture: SHA-256 of the text "<width>x<height>:rgba8-srgb:" and of
/// its rows, top row first, four bytes a pixel: red, green, blue, premultiplied by alpha, and alpha, in sRGB.
class PixelHasher {
  public:
    /// The picture's size in pixels, within the budget.
    PixelHasher(std::int64_t width, std::int64_t height);

    /// Feeds the next rows, or parts of rows.
    void update(std::span<const std::byte> pixels);

    /// The hash as 64 lower-case hexadecimal digits; nothing when not exactly the picture's bytes were fed.
    /// Call it once, last.
    std::optional<std::string> finish();

  private:
    platform::SHA256 hash_;
    std::uint64_t missing_;  // bytes yet to be fed; wraps round when too many were
};

}  // namespace quorvantis
