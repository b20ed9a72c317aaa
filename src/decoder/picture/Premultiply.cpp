#include "decoder/picture/Premultiply.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

namespace quorvantis::decoder {

namespace {

std::uint8_t straight(unsigned colour, unsigned alpha) {
    if (alpha == 0) return 0;
    return static_cast<std::uint8_t>(std::min((colour * 255 + alpha / 2) / alpha, 255U));
}

}  // namespace

void premultiply(std::span<std::uint8_t> rgba) {
    for (std::size_t i = 0; i + 3 < rgba.size(); i += 4) {
        const unsigned alpha = rgba[i + 3];
        if (alpha == 255) continue;
        for (std::size_t c = i; c < i + 3; ++c)
            rgba[c] = static_cast<std::uint8_t>((rgba[c] * alpha + 127) / 255);
    }
}

void unpremultiply(std::span<std::uint8_t> pixels, std::size_t samples) {
    for (std::size_t i = 0; i + samples <= pixels.size(); i += samples) {
        const unsigned alpha = pixels[i + samples - 1];
        for (std::size_t c = i; c < i + samples - 1; ++c) pixels[c] = straight(pixels[c], alpha);
    }
}

}  // namespace quorvantis::decoder
