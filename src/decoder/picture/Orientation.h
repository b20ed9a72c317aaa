#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string_view>

namespace quorvantis::decoder {

/// The transformation that makes a stored picture upright: 1 to 8, as in EXIF 2.32, 4.6.4, tag Orientation.
using Orientation = int;

inline constexpr Orientation upright = 1;

/// The marker before EXIF data in JPEG (EXIF 2.32, 4.7.2), and in some files of other formats.
inline constexpr std::string_view exifMark = {"Exif\0\0", 6};

/// The orientation in EXIF data, which is a TIFF header and directory, optionally after the marker. Empty if
/// it has no valid orientation or is damaged.
std::optional<Orientation> exifOrientation(std::span<const std::uint8_t> exif);

/// The value as an orientation; empty unless it is 1 to 8.
std::optional<Orientation> validOrientation(std::uint32_t value);

/// Whether width and height of the upright picture are those of the stored one swapped.
constexpr bool swapsSides(Orientation orientation) {
    return orientation >= 5;
}

/// Calls `take` with the rows of the upright picture, several at a time, top row first. `pixels` is the
/// stored picture, `width` by `height` pixels.
void forEachUprightRows(Orientation orientation, std::span<const std::uint32_t> pixels, std::size_t width,
                        std::size_t height, const std::function<void(std::span<const std::uint32_t>)>& take);

}  // namespace quorvantis::decoder
