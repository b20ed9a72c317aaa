#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <vector>

#include "decoder/formats/Bitmap.h"
#include "decoder/formats/LittleEndian.h"
#include "decoder/picture/Colour.h"
#include "decoder/picture/GiveUp.h"
#include "decoder/picture/PictureFile.h"

namespace quorvantis::decoder {

namespace {

constexpr std::size_t coreHeaderSize = 12;
constexpr std::size_t infoHeaderSize = 40;
constexpr std::size_t redGreenBlueHeaderSize = 52;  // with masks
constexpr std::size_t os2HeaderSize = 64;
constexpr std::size_t maximumHeaderSize = 124;
constexpr std::uint32_t embeddedProfile = 0x4D424544;  // "MBED"

/// The fields of a header of any kind; those that it lacks are 0.
class Fields {
  public:
    Fields(const PictureFile& file, std::uint64_t position) {
        file.read(position, std::span(bytes_).first(4));
        size_ = number32(0);
        if (size_ != coreHeaderSize && (size_ < 16 || size_ > bytes_.size())) giveUp();
        file.read(position + 4, std::span(bytes_).subspan(4, size_ - 4));
    }

    std::size_t size() const { return size_; }
    bool isCore() const { return size_ == coreHeaderSize; }
    std::int64_t width() const { return isCore() ? number16(4) : signed32(4); }
    std::int64_t height() const { return isCore() ? number16(6) : signed32(8); }
    int bits() const { return static_cast<int>(number16(isCore() ? 10 : 14)); }
    std::uint32_t compression() const { return isCore() ? 0 : number32(16); }
    std::uint32_t usedColours() const { return isCore() ? 0 : number32(32); }
    std::uint32_t number16(std::size_t at) const { return littleEndian(bytes_, at, 2); }
    std::uint32_t number32(std::size_t at) const { return littleEndian(bytes_, at, 4); }

  private:
    std::int64_t signed32(std::size_t at) const { return static_cast<std::int32_t>(number32(at)); }

    std::array<std::uint8_t, maximumHeaderSize> bytes_ = {};
    std::size_t size_ = 0;
};

/// The number of masks that go with the compression; 0 for run-length encoding.
std::size_t maskCount(const Fields& fields) {
    if (fields.size() == os2HeaderSize) return 0;  // compression 3 has another meaning in OS/2
    if (fields.compression() == 6) return 4;
    if (fields.compression() == 3) return fields.size() >= redGreenBlueHeaderSize + 4 ? 4 : 3;
    return 0;
}

BitmapHeader::Compression compression(const Fields& fields) {
    using enum BitmapHeader::Compression;
    if (fields.compression() == 0 || maskCount(fields) > 0) return none;
    if (fields.compression() == 1 && fields.bits() == 8) return runs8;
    if (fields.compression() == 2 && fields.bits() == 4) return runs4;
    giveUp();
}

void readMasks(const PictureFile& file, const Fields& fields, std::uint64_t position, BitmapHeader& header) {
    header.masks = header.bits == 16 ? std::array<std::uint32_t, 4>{0x7C00, 0x03E0, 0x001F, 0}
                                     : std::array<std::uint32_t, 4>{0xFF0000, 0x00FF00, 0x0000FF, 0};
    const std::size_t count = maskCount(fields);
    if (count == 0) return;
    std::array<std::uint8_t, 16> masks = {};
    file.read(position + infoHeaderSize, std::span(masks).first(count * 4));
    for (std::size_t i = 0; i < header.masks.size(); ++i) header.masks[i] = littleEndian(masks, i * 4, 4);
    header.end = std::max(header.end, position + infoHeaderSize + count * 4);
}

void readPalette(const PictureFile& file, const Fields& fields, BitmapHeader& header) {
    const std::size_t entrySize = fields.isCore() ? 3 : 4;
    const std::size_t maximumCount = std::size_t{1} << header.bits;
    const std::size_t count =
        fields.usedColours() == 0 ? maximumCount : std::min<std::size_t>(fields.usedColours(), maximumCount);
    std::vector<std::uint8_t> entries(count * entrySize);
    file.read(header.end, entries);
    for (std::size_t at = 0; at < entries.size(); at += entrySize)
        header.palette.push_back({entries[at + 2], entries[at + 1], entries[at]});
    header.palette.resize(maximumCount);  // colours that the file does not define are black
    header.end +=
        fields.usedColours() == 0 ? entries.size() : std::uint64_t{fields.usedColours()} * entrySize;
}

ColourSpace colours(const PictureFile& file, const Fields& fields, std::uint64_t position) {
    if (fields.size() < maximumHeaderSize || fields.number32(56) != embeddedProfile) return {};
    const std::uint64_t start = position + fields.number32(112);
    const std::uint64_t size = fields.number32(116);
    if (start > file.size() || size > file.size() - start) return {};
    ColourSpace colours = {.profile = std::vector<std::uint8_t>(size), .calibration = {}};
    file.read(start, colours.profile);
    return colours;
}

}  // namespace

std::size_t BitmapHeader::storedRowSize() const {
    return (static_cast<std::size_t>(size.width) * static_cast<std::size_t>(bits) + 31) / 32 * 4;
}

BitmapHeader readBitmapHeader(const PictureFile& file, std::uint64_t position) {
    const Fields fields(file, position);
    BitmapHeader header;
    header.size = {fields.width(), std::abs(fields.height())};
    header.topDown = fields.height() < 0;
    header.bits = fields.bits();
    constexpr std::array depths = {1, 2, 4, 8, 16, 24, 32};
    if (std::find(depths.begin(), depths.end(), header.bits) == depths.end()) giveUp();
    header.compression = compression(fields);
    header.end = position + fields.size();
    readMasks(file, fields, position, header);
    if (header.bits <= 8) readPalette(file, fields, header);
    header.colours = colours(file, fields, position);
    return header;
}

}  // namespace quorvantis::decoder
