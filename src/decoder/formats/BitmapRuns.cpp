#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "decoder/formats/Bitmap.h"
#include "decoder/picture/GiveUp.h"
#include "decoder/picture/PictureFile.h"

namespace quorvantis::decoder {

namespace {

/// Decodes the runs. Pixels outside of the picture are ignored.
class RunDecoder {
  public:
    RunDecoder(const PictureFile& file, const BitmapHeader& header, std::uint64_t position)
        : reader_(file, position),
          width_(static_cast<std::size_t>(header.size.width)),
          height_(static_cast<std::size_t>(header.size.height)),
          nibbles_(header.compression == BitmapHeader::Compression::runs4),
          indices_(width_ * height_) {}

    std::vector<std::uint8_t> decode() {
        while (y_ < height_) {
            const std::size_t count = byte();
            const std::size_t value = byte();
            if (count > 0)
                run(count, value);
            else if (value > 2)
                literal(value);
            else if (value == 2)
                skip();
            else if (value == 1)
                break;  // the end of the bitmap
            else
                nextRow();
        }
        return std::move(indices_);
    }

  private:
    std::size_t byte() {
        std::uint8_t byte = 0;
        if (reader_.read({&byte, 1}) == 0) giveUp();
        return byte;
    }

    void put(std::size_t index) {
        if (x_ < width_) indices_[y_ * width_ + x_] = static_cast<std::uint8_t>(index);
        ++x_;
    }

    void run(std::size_t count, std::size_t value) {
        for (std::size_t i = 0; i < count; ++i) put(nibbles_ ? nibble(value, i) : value);
    }

    void literal(std::size_t count) {
        const std::size_t perByte = nibbles_ ? 2 : 1;
        std::size_t value = 0;
        for (std::size_t i = 0; i < count; ++i) {
            if (i % perByte == 0) value = byte();
            put(nibbles_ ? nibble(value, i) : value);
        }
        const std::size_t bytes = (count + perByte - 1) / perByte;
        if (bytes % 2 == 1) byte();
    }

    void skip() {
        x_ += byte();
        y_ += byte();
    }

    void nextRow() {
        x_ = 0;
        ++y_;
    }

    static std::size_t nibble(std::size_t byte, std::size_t i) { return i % 2 == 0 ? byte >> 4 : byte & 15; }

    PictureReader reader_;
    std::size_t width_, height_;
    bool nibbles_;
    std::vector<std::uint8_t> indices_;
    std::size_t x_ = 0, y_ = 0;
};

}  // namespace

std::vector<std::uint8_t> readBitmapRuns(const PictureFile& file, const BitmapHeader& header,
                                         std::uint64_t position) {
    return RunDecoder(file, header, position).decode();
}

}  // namespace quorvantis::decoder
