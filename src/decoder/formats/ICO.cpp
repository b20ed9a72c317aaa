#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "decoder/formats/Bitmap.h"
#include "decoder/formats/Format.h"
#include "decoder/formats/LittleEndian.h"
#include "decoder/formats/Readers.h"
#include "decoder/picture/Layout.h"
#include "decoder/picture/PictureFile.h"
#include "decoder/picture/UprightPicture.h"
#include "imaging/DecodedPixels.h"

namespace quorvantis::decoder {

namespace {

constexpr std::size_t directoryHeaderSize = 6;
constexpr std::size_t entrySize = 16;

/// Where the file has its first picture, in bytes.
struct Place {
    std::uint64_t position;
    std::uint64_t end;
};

Place firstPicture(const PictureFile& file) {
    std::array<std::uint8_t, entrySize> entry;
    file.read(directoryHeaderSize, entry);
    const std::uint64_t position = littleEndian(entry, 12, 4);
    return {position, position + littleEndian(entry, 8, 4)};
}

bool isPNG(const PictureFile& file, std::uint64_t position) {
    std::array<std::uint8_t, recognisedBytes> start;
    const auto size = file.readUpTo(position, start);
    return recognisedFormat(std::span(start).first(size)) == Format::png;
}

/// The mask after an icon's picture: one bit per pixel, 1 where it is transparent. Its rows should be padded
/// to a multiple of 4 bytes like those of the picture, but some writers do not.
class Mask {
  public:
    Mask(const PictureFile& file, const BitmapHeader& picture, std::uint64_t end)
        : file_(file), height_(static_cast<std::size_t>(picture.size.height)) {
        BitmapHeader mask = picture;
        mask.bits = 1;
        position_ = picture.end + picture.storedRowSize() * height_;
        const std::size_t unpadded = (static_cast<std::size_t>(mask.size.width) + 7) / 8;
        row_.resize(position_ + unpadded * height_ == end ? unpadded : mask.storedRowSize());
    }

    void apply(std::int64_t y, std::span<std::uint8_t> rgba) {
        const auto row = height_ - 1 - static_cast<std::size_t>(y);
        file_.read(position_ + row * row_.size(), row_);
        for (std::size_t x = 0; x * 4 < rgba.size(); ++x)
            if (row_[x / 8] >> (7 - x % 8) & 1) rgba[x * 4 + 3] = 0;
    }

  private:
    const PictureFile& file_;
    std::size_t height_;
    std::uint64_t position_;
    std::vector<std::uint8_t> row_;
};

DecodedPixels readBitmapEntry(const PictureFile& file, const Place& place) {
    auto header = readBitmapHeader(file, place.position);
    header.size.height /= 2;  // it counts the rows of the picture and of the mask
    if (header.bits == 32) header.masks[3] = 0xFF000000;
    UprightPicture picture({.size = header.size, .declared = {}, .layout = Layout::rgba});
    BitmapRows rows(file, header, header.end);
    Mask mask(file, header, place.end);
    std::vector<std::uint8_t> row(picture.rowSize());
    for (std::int64_t y = 0; y < header.size.height; ++y) {
        rows.read(y, row);
        if (header.bits < 32) mask.apply(y, row);
        picture.addRow(row);
    }
    return picture.finish();
}

}  // namespace

DecodedPixels readICO(const PictureFile& file) {
    const auto place = firstPicture(file);
    return isPNG(file, place.position) ? readPNG(file, place.position) : readBitmapEntry(file, place);
}

}  // namespace quorvantis::decoder
