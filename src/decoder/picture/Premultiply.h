#pragma once

#include <cstdint>
#include <span>

namespace quorvantis::decoder {

/// Multiplies the colour of RGBA pixels by their alpha: round(c * a / 255).
void premultiply(std::span<std::uint8_t> rgba);

/// The reverse, round(c * 255 / a) and at most 255, for pixels of `samples` bytes of which the last is alpha.
/// What is wholly transparent becomes 0.
void unpremultiply(std::span<std::uint8_t> pixels, std::size_t samples);

}  // namespace quorvantis::decoder
