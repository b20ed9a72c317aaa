#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "decoder/picture/Colour.h"
#include "decoder/picture/PictureFile.h"
#include "decoder/picture/UprightPicture.h"

namespace quorvantis::decoder {

/// The header of a device-independent bitmap, as found after the file header of a BMP file and in the entries
/// of an ICO file: BITMAPCOREHEADER, BITMAPINFOHEADER, BITMAPV4HEADER, BITMAPV5HEADER or a size between
/// these.
struct BitmapHeader {
    enum class Compression { none, runs8, runs4 };

    Size size;
    bool topDown = false;
    int bits = 0;  // per pixel: 1, 2, 4, 8, 16, 24 or 32
    Compression compression = Compression::none;
    // Of red, green, blue and alpha in a pixel of 16 bits or more; 0 for a sample that pixels do not have.
    std::array<std::uint32_t, 4> masks = {};
    std::vector<std::array<std::uint8_t, 3>> palette;  // red, green, blue; for up to 8 bits per pixel
    ColourSpace colours;
    std::uint64_t end = 0;  // the position in the file after the header, masks and palette

    /// The size of an uncompressed row in the file, in bytes: a multiple of 4.
    std::size_t storedRowSize() const;
};

/// Reads the header at the position; gives up on unsupported kinds of bitmaps.
BitmapHeader readBitmapHeader(const PictureFile& file, std::uint64_t position);

/// Reads the rows of a bitmap. If it is run-length encoded, all of it is decoded first.
class BitmapRows {
  public:
    /// `position` is where the pixels start. The header's size must be within the pixel budget. `file` and
    /// `header` must outlive this.
    BitmapRows(const PictureFile& file, const BitmapHeader& header, std::uint64_t position);

    /// Reads row `y`, counted from the top, as RGBA. Alpha is 255 if the bitmap has none.
    void read(std::int64_t y, std::span<std::uint8_t> rgba);

  private:
    void readIndices(std::span<std::uint8_t> rgba) const;
    void readMasked(std::span<std::uint8_t> rgba) const;

    const PictureFile& file_;
    const BitmapHeader& header_;
    std::uint64_t position_;
    std::vector<std::uint8_t> indices_;  // one byte per pixel, rows in the file's order; only if compressed
    std::vector<std::uint8_t> stored_;   // the current row
};

/// Decodes the palette indices of a run-length encoded bitmap at the position: one byte per pixel, rows in
/// the file's order. Pixels that the file skips are 0.
std::vector<std::uint8_t> readBitmapRuns(const PictureFile& file, const BitmapHeader& header,
                                         std::uint64_t position);

}  // namespace quorvantis::decoder
