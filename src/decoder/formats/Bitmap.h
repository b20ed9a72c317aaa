#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "decoder/picture/PictureFile.h"
#include "decoder/picture/UprightPicture.h"

namespace quorvantis::decoder {

/// The header of a device-independent bitmap, which a BMP file holds after its file header and an ICO file in
/// its entries: BITMAPCOREHEADER, BITMAPINFOHEADER, BITMAPV4HEADER, BITMAPV5HEADER and those between.
struct BitmapHeader {
    enum class Compression { none, runs8, runs4 };

    Size size;
    bool topDown = false;
    int bits = 0;  // a pixel: 1, 2, 4, 8, 16, 24 or 32
    Compression compression = Compression::none;
    // Of red, green, blue and alpha in a pixel of 16 bits or more; 0: there are none.
    std::array<std::uint32_t, 4> masks = {};
    std::vector<std::array<std::uint8_t, 3>> palette;  // red, green, blue; up to 8 bits
    ColourSpace colours;
    std::uint64_t end = 0;  // the position in the file after header, masks and palette

    /// The bytes of a row as it stands in the file: a multiple of 4.
    std::size_t storedRowSize() const;
};

/// Reads the header at the position; gives up on kinds of bitmaps that are not read.
BitmapHeader readBitmapHeader(const PictureFile& file, std::uint64_t position);

/// The uncompressed rows that start at the position or, for the compressions by runs, all the palette
/// indices.
class BitmapRows {
  public:
    /// `header` must be within the pixel budget.
    BitmapRows(const PictureFile& file, const BitmapHeader& header, std::uint64_t position);

    /// Reads a row, 0 on top, as RGBA; alpha is 255 where the bitmap has none.
    void read(std::int64_t y, std::span<std::uint8_t> rgba);

  private:
    void readIndices(std::span<std::uint8_t> rgba) const;
    void readMasked(std::span<std::uint8_t> rgba) const;

    const PictureFile& file_;
    const BitmapHeader& header_;
    std::uint64_t position_;
    std::vector<std::uint8_t> indices_;  // of all rows in the file's order, one a byte, when compressed
    std::vector<std::uint8_t> stored_;   // the row being read
};

/// Decodes the palette indices of a bitmap compressed by runs, from the position on: rows in the file's
/// order, one byte a pixel, 0 where the file says nothing.
std::vector<std::uint8_t> readBitmapRuns(const PictureFile& file, const BitmapHeader& header,
                                         std::uint64_t position);

}  // namespace quorvantis::decoder
