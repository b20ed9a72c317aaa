#pragma once

#include <cstddef>

namespace quorvantis::decoder {

/// The samples of a pixel, 8 bits each, in the order of the name; alpha is 255 where opaque, ink 255 where
/// full.
enum class Layout {
    gray,
    grayAlpha,
    rgb,
    rgba,
    rgbx,  // the fourth byte is 255
    cmyk,
};

/// How many bytes a pixel takes.
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
