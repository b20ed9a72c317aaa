#pragma once

#include <array>
#include <cstdint>
#include <lcms2.h>
#include <optional>
#include <span>
#include <vector>

namespace quorvantis::decoder {

/// The conversion to sRGB from a profile that consists of three curves and a matrix (ICC.1:2010, 8.3.3), with
/// the same result as lcms2 for samples of 8 bits, to the bit, in a third of the time.
class MatrixConversion {
  public:
    /// Empty unless the profile is of that kind, is for RGB and has a black of zeros, and colours that are
    /// not far beyond what can be seen. `sRGB` is lcms2's own.
    static std::optional<MatrixConversion> from(cmsHPROFILE profile, cmsHPROFILE sRGB);

    /// Converts pixels in place and leaves their alpha.
    void convert(std::span<std::uint8_t> rgba) const;

  private:
    static constexpr int one = 1 << 14;  // as a fixed-point number

    std::array<std::array<int, 256>, 3> linear_;  // by channel and sample, in fixed point
    std::array<std::array<int, 3>, 3> matrix_;    // in fixed point
    std::vector<std::uint8_t> samples_;           // of sRGB, by linear values 0 to `one`
};

}  // namespace quorvantis::decoder
