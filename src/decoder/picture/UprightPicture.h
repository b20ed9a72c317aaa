#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "decoder/picture/Colour.h"
#include "decoder/picture/Layout.h"
#include "decoder/picture/Orientation.h"
#include "decoder/picture/RowHasher.h"
#include "imaging/DecodedPixels.h"

namespace quorvantis::decoder {

/// In pixels.
struct Size {
    std::int64_t width = 0;
    std::int64_t height = 0;
};

/// What a format's reader tells of a picture before its rows.
struct PictureHeader {
    Size size;                     // of the stored picture
    std::optional<Size> declared;  // where it differs from `size`
    Layout layout = Layout::rgba;
    bool premultiplied = false;  // colours are already multiplied by alpha
    Orientation orientation = upright;
    ColourSpace colours = {};
};

/// Takes the rows of a picture as they are stored and hashes it as it is to be seen: in sRGB, premultiplied,
/// upright. Rows of an upright picture go straight into the hash; others wait for the last one.
class UprightPicture {
  public:
    /// Gives up when the picture exceeds the pixel budget.
    explicit UprightPicture(const PictureHeader& header);

    /// The length of a row in bytes.
    std::size_t rowSize() const { return width() * samplesPerPixel(header_.layout); }

    /// Takes the next row, top row first.
    void addRow(std::span<const std::uint8_t> row);

    /// Takes all the rows, which stand one after the other.
    void addRows(std::span<const std::uint8_t> rows);

    /// Call it once, after the last row.
    DecodedPixels finish();

  private:
    std::size_t width() const { return static_cast<std::size_t>(header_.size.width); }
    void convert(std::span<const std::uint8_t> row, std::span<std::uint8_t> rgba);

    PictureHeader header_;
    ColourConversion conversion_;
    RowHasher hasher_;
    std::vector<std::uint8_t> row_;       // converted, when it goes into the hash at once
    std::vector<std::uint8_t> straight_;  // a premultiplied row on its way to another colour space
    std::vector<std::uint32_t> stored_;   // the converted rows so far, when the picture has to be turned
};

}  // namespace quorvantis::decoder
