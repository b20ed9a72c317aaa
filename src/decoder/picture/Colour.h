#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "decoder/picture/Layout.h"

namespace quorvantis::decoder {

/// Colours told by numbers instead of a profile (PNG 1.2, 4.2.2: cHRM and gAMA).
struct Calibration {
    double exponent = 2.2;  // a sample's light is its value to this power
    // Chromaticities x, y of white, red, green and blue; at first those of sRGB.
    std::array<double, 8> whiteAndPrimaries = {0.3127, 0.3290, 0.64, 0.33, 0.30, 0.60, 0.15, 0.06};
};

/// What a file says of its colours; when nothing, they are sRGB.
struct ColourSpace {
    std::vector<std::uint8_t> profile;  // ICC.1; goes before the calibration
    std::optional<Calibration> calibration;
};

/// Turns rows of any layout into RGBA in sRGB, not premultiplied.
///
/// Gray g becomes (g, g, g) and ink c, m, y, k becomes (255 - c)(255 - k) / 255 and so on, unless a profile
/// says otherwise. Profiles are converted with perceptual intent; one that is damaged or made for another
/// kind of pixels counts as none.
class ColourConversion {
  public:
    ColourConversion(const ColourSpace& space, Layout layout);

    /// Whether a row of RGBA (or RGBX) passes unchanged.
    bool isIdentity() const;

    /// Converts one row of as many pixels as `rgba` holds.
    void convert(std::span<const std::uint8_t> samples, std::span<std::uint8_t> rgba) const;

  private:
    Layout layout_;
    bool fromRGBA_ = false;            // the transform reads the expanded pixels, not the samples
    std::shared_ptr<void> transform_;  // of lcms2; none for sRGB
};

}  // namespace quorvantis::decoder
