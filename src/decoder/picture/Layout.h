#pragma once

#include <cstddef>

namespace quorvantis::decoder {

/// The samples of a pixel, 8 bits each, in the order of the name. 255 is opaque for alpha and full for ink.
enum class Layout {
    gray,
    grayAlpha,
    rgb,
    rgba,
    rgbx,  // the fourth byte is 255
    cmyk,
};

/// The number of samples, and so of bytes, per pixel.
constexpr std::size_t samplesPerPixel(Layout layout) {
    switch (layout) {
        case Layout::gray: return 1;
        case Layout::grayAlpha: return 2;
        case Layout::rgb: return 3;
        default: return 4;
    }
}

constexpr bool hasAlpha(Layout layout) {
    return layout == Layout::grayAlpha || layout == Layout::rgba;
}

}  // namespace quorvantis::decoder
