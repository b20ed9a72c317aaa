#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <tiffio.h>
#include <vector>

#include "decoder/picture/PictureFile.h"

namespace quorvantis::decoder {

/// The first picture of a TIFF file (TIFF 6.0), stored in strips or tiles, with interleaved or planar
/// samples. Operations give up if the file is damaged.
class TIFFPicture {
  public:
    explicit TIFFPicture(const PictureFile& file);

    TIFF* handle() const { return tiff_.get(); }

    /// The value of a 16-bit field, or its default value; 0 if it has none.
    std::uint16_t field(std::uint32_t tag) const;

    std::uint32_t width() const { return width_; }
    std::uint32_t height() const { return height_; }
    std::uint32_t bits() const { return bits_; }        // per sample, 1 to 16
    std::uint32_t samples() const { return samples_; }  // per pixel

    /// The number of rows that `readRows` returns; the last call may return fewer.
    std::uint32_t rowsAtOnce() const { return chunkHeight_; }

    /// Reads `rowsAtOnce` rows from row `top` on, or the remaining ones. Samples are interleaved, one byte
    /// each: scaled to round(value * 255 / maximum) or, if `scaled` is false, unchanged. Valid until the next
    /// call.
    std::span<const std::uint8_t> readRows(std::uint32_t top, bool scaled);

  private:
    std::uint32_t longField(std::uint32_t tag) const;
    void readChunk(std::uint32_t left, std::uint32_t top, std::uint16_t plane);
    void copyChunk(std::uint32_t left, std::uint32_t rows, std::uint16_t plane, bool scaled);
    std::uint32_t sample(std::size_t row, std::size_t index) const;

    std::unique_ptr<TIFF, decltype(&TIFFClose)> tiff_;
    std::uint32_t width_, height_;
    std::uint16_t bits_, samples_, planes_;
    bool tiled_;
    std::uint32_t chunkWidth_, chunkHeight_;  // of a strip or tile, in pixels
    std::size_t chunkRowSize_;                // bytes
    std::vector<std::uint8_t> chunk_;         // one strip or tile
    std::vector<std::uint8_t> rows_;
};

}  // namespace quorvantis::decoder
