#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "decoder/picture/Layout.h"
#include "decoder/picture/MatrixConversion.h"

namespace quorvantis::decoder {

/// A colour space defined by numbers instead of a profile (PNG 1.2, 4.2.2: cHRM and gAMA; PNG 3, 11.3.2.6:
/// cICP).
struct Calibration {
    // A sample's intensity is its value to this power; empty for the curve of sRGB (IEC 61966-2-1).
    std::optional<double> exponent = 2.2;
    // Chromaticities x, y of white, red, green and blue; those of sRGB by default.
    std::array<double, 8> whiteAndPrimaries = {0.3127, 0.3290, 0.64, 0.33, 0.30, 0.60, 0.15, 0.06};
};

/// The colour space that a file declares; sRGB if it declares none.
struct ColourSpace {
    std::vector<std::uint8_t> profile;  // ICC.1; takes precedence over the calibration
    std::optional<Calibration> calibration;
};

/// Converts rows of any layout to RGBA in sRGB, not premultiplied.
///
/// Without a profile, gray g becomes (g, g, g), and red of the ink (c, m, y, k) becomes (255 - c)(255 - k) /
/// 255; green and blue likewise. Profiles are converted with perceptual intent. A damaged profile, or one for
/// another kind of pixels, is ignored.
class ColourConversion {
  public:
    ColourConversion(const ColourSpace& space, Layout layout);

    /// Whether rows are already RGBA (or RGBX) in sRGB, so that `convert` only copies.
    bool isIdentity() const;

    /// Converts a row. `rgba` has four bytes for each pixel of `samples`.
    void convert(std::span<const std::uint8_t> samples, std::span<std::uint8_t> rgba) const;

  private:
    Layout layout_;
    std::optional<MatrixConversion> matrix_;
    bool fromRGBA_ = false;            // the transform reads the expanded pixels, not the samples
    std::shared_ptr<void> transform_;  // of lcms2; null if none is needed
};

}  // namespace quorvantis::decoder
