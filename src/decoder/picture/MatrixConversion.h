#pragma once

#include <array>
#include <cstdint>
#include <lcms2.h>
#include <optional>
#include <span>
#include <vector>

namespace quorvantis::decoder {

/// The conversion to sRGB from a profile that consists of three curves and a matrix (ICC.1:2010, 8.3.3), with
/// the same result as lcms2 for samples of 8 bits, to the bit, in a fraction of the time.
class MatrixConversion {
  public:
    /// Empty unless the profile is of that kind, is for RGB and has a black of zeros, and colours that are
    /// not far beyond what can be seen. `sRGB` is lcms2's own.
    static std::optional<MatrixConversion> from(cmsHPROFILE profile, cmsHPROFILE sRGB);

    /// Converts pixels in place and leaves their alpha.
    void convert(std::span<std::uint8_t> rgba) const;

  private:
    static constexpr int one = 1 << 14;  // as a fixed-point number

    // What a sample adds to linear red, green and blue, and one more so that the processor can add four at
    // once, by its channel and value: the product of two numbers in fixed point. Those of red hold the
    // rounding and the start of `samples_`, too.
    alignas(16) std::array<std::array<std::array<int, 4>, 256>, 3> parts_ = {};
    std::vector<std::uint8_t> samples_;  // of sRGB, by the sum of three parts in fixed point
};

}  // namespace quorvantis::decoder
