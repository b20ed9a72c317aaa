#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "decoder/picture/Colour.h"
#include "decoder/picture/Layout.h"
#include "decoder/picture/Orientation.h"
#include "decoder/picture/PixelMemory.h"
#include "decoder/picture/RowHasher.h"
#include "imaging/DecodedPixels.h"

namespace quorvantis::decoder {

/// In pixels.
struct Size {
    std::int64_t width = 0;
    std::int64_t height = 0;
};

/// The properties of a picture, given by a format's reader before the rows.
struct PictureHeader {
    Size size;                     // of the stored picture
    std::optional<Size> declared;  // if it differs from `size`
    Layout layout = Layout::rgba;
    bool premultiplied = false;  // whether colours are already multiplied by alpha
    Orientation orientation = upright;
    ColourSpace colours = {};
};

/// Converts the stored rows of a picture to sRGB, premultiplies them by alpha, and computes the pixel hash of
/// the upright picture. Rows are hashed immediately if the picture is stored upright, otherwise kept until
/// the last one.
class UprightPicture {
  public:
    /// Gives up if the picture exceeds the pixel budget.
    explicit UprightPicture(const PictureHeader& header);

    /// The size of a stored row in bytes.
    std::size_t rowSize() const { return width() * samplesPerPixel(header_.layout); }

    /// Adds the next row, top row first.
    void addRow(std::span<const std::uint8_t> row);

    /// Adds consecutive rows without padding.
    void addRows(std::span<const std::uint8_t> rows);

    /// Call it once, after the last row. Gives up if the number of rows is wrong.
    DecodedPixels finish();

  private:
    std::size_t width() const { return static_cast<std::size_t>(header_.size.width); }
    void convert(std::span<const std::uint8_t> row, std::span<std::uint8_t> rgba);

    PictureHeader header_;
    ColourConversion conversion_;
    RowHasher hasher_;
    std::vector<std::uint8_t> row_;       // the converted row, if it is hashed immediately
    std::vector<std::uint8_t> straight_;  // the row without premultiplication, before colour conversion
    PixelMemory stored_;                  // all converted rows, if the picture must be turned
    std::span<std::uint32_t> unstored_;   // the part of it that has none yet
};

}  // namespace quorvantis::decoder
