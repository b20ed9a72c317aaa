#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace quorvantis::decoder {

/// Multiplies the colours of RGBA pixels by their alpha: round(c * a / 255).
void premultiply(std::span<std::uint8_t> rgba);

/// The inverse: min(round(c * 255 / a), 255). Pixels have `samples` bytes, the last of which is alpha. The
/// colours of fully transparent pixels become 0.
void unpremultiply(std::span<std::uint8_t> pixels, std::size_t samples);

}  // namespace quorvantis::decoder
