#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string_view>

namespace quorvantis::decoder {

/// How a stored picture is turned to stand upright: the values 1 to 8 of EXIF 2.32, 4.6.4, tag Orientation.
using Orientation = int;

inline constexpr Orientation upright = 1;

/// What stands before a block of EXIF in JPEG (EXIF 2.32, 4.7.2), and by custom in some other files.
inline constexpr std::string_view exifMark = {"Exif\0\0", 6};

/// The orientation that a block of EXIF holds: a TIFF header and its first directory, with or without the
/// mark before. None when it holds none, or is damaged.
std::optional<Orientation> exifOrientation(std::span<const std::uint8_t> exif);

/// The same of a number from a file: none for all but 1 to 8.
std::optional<Orientation> validOrientation(std::uint32_t value);

/// Whether the upright picture is as wide as the stored one is high.
constexpr bool swapsSides(Orientation orientation) {
    return orientation >= 5;
}

/// Hands on the rows of the upright picture, several at a time, top row first. `pixels` is the stored
/// picture, its first row first, `width` by `height` pixels.
void forEachUprightRows(Orientation orientation, std::span<const std::uint32_t> pixels, std::size_t width,
                        std::size_t height, const std::function<void(std::span<const std::uint32_t>)>& take);

}  // namespace quorvantis::decoder
