#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>

#include "decoder/formats/Bitmap.h"
#include "decoder/formats/LittleEndian.h"
#include "decoder/picture/PictureFile.h"

namespace quorvantis::decoder {

namespace {

/// The masked bits scaled to 8 bits: round(value * 255 / maximum). 255 for an empty mask.
std::uint8_t maskedSample(std::uint32_t pixel, std::uint32_t mask) {
    if (mask == 0) return 255;
    const int shift = std::countr_zero(mask);
    const std::uint64_t maximum = mask >> shift;
    const std::uint64_t value = (pixel & mask) >> shift;
    if (maximum == 255) return static_cast<std::uint8_t>(value);
    return static_cast<std::uint8_t>((value * 255 + maximum / 2) / maximum);
}

}  // namespace

BitmapRows::BitmapRows(const PictureFile& file, const BitmapHeader& header, std::uint64_t position)
    : file_(file), header_(header), position_(position) {
    const auto width = static_cast<std::size_t>(header.size.width);
    if (header.compression == BitmapHeader::Compression::none)
        // Without padding, which the last row may lack.
        stored_.resize((width * static_cast<std::size_t>(header.bits) + 7) / 8);
    else
        indices_ = readBitmapRuns(file, header, position);
}

void BitmapRows::read(std::int64_t y, std::span<std::uint8_t> rgba) {
    const auto row = static_cast<std::uint64_t>(header_.topDown ? y : header_.size.height - 1 - y);
    if (indices_.empty())
        file_.read(position_ + row * header_.storedRowSize(), stored_);
    else {
        const auto width = static_cast<std::ptrdiff_t>(header_.size.width);
        const auto start = indices_.begin() + static_cast<std::ptrdiff_t>(row) * width;
        stored_.assign(start, start + width);
    }
    header_.bits <= 8 ? readIndices(rgba) : readMasked(rgba);
}

void BitmapRows::readIndices(std::span<std::uint8_t> rgba) const {
    const unsigned bits = indices_.empty() ? static_cast<unsigned>(header_.bits) : 8;
    const unsigned perByte = 8 / bits;
    for (std::size_t x = 0; x * 4 < rgba.size(); ++x) {
        const unsigned shift = 8 - bits * (static_cast<unsigned>(x % perByte) + 1);
        const auto& colour = header_.palette[stored_[x / perByte] >> shift & ((1U << bits) - 1)];
        std::copy(colour.begin(), colour.end(), rgba.begin() + static_cast<std::ptrdiff_t>(x * 4));
        rgba[x * 4 + 3] = 255;
    }
}

void BitmapRows::readMasked(std::span<std::uint8_t> rgba) const {
    const auto size = static_cast<std::size_t>(header_.bits) / 8;
    for (std::size_t x = 0; x * 4 < rgba.size(); ++x) {
        const auto pixel = littleEndian(stored_, x * size, size);
        for (std::size_t c = 0; c < 4; ++c) rgba[x * 4 + c] = maskedSample(pixel, header_.masks[c]);
    }
}

}  // namespace quorvantis::decoder
