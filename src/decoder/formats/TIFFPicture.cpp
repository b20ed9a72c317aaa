#include "decoder/formats/TIFFPicture.h"

#include <algorithm>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <span>
#include <string_view>

#include "decoder/picture/GiveUp.h"
#include "decoder/picture/PictureFile.h"
#include "imaging/PixelHasher.h"

namespace quorvantis::decoder {

namespace {

// Of `chunk_` and `rows_`, in bytes: four inks and alpha, of 16 bits.
constexpr std::uint64_t maximumRowsSize = pixelBudget * 10;

/// The input callbacks of libtiff.
struct Stream {
    const PictureFile& file;
    std::uint64_t at = 0;

    static tmsize_t read(thandle_t handle, void* bytes, tmsize_t size) {
        auto& stream = *static_cast<Stream*>(handle);
        const auto count = stream.file.readUpTo(
            stream.at,
            {static_cast<std::uint8_t*>(bytes), static_cast<std::size_t>(std::max<tmsize_t>(size, 0))});
        stream.at += count;
        return static_cast<tmsize_t>(count);
    }
    static tmsize_t write(thandle_t, void*, tmsize_t) { return -1; }
    static toff_t seek(thandle_t handle, toff_t offset, int origin) {
        auto& stream = *static_cast<Stream*>(handle);
        const std::uint64_t base = origin == SEEK_CUR   ? stream.at
                                   : origin == SEEK_END ? stream.file.size()
                                                        : 0;
        return stream.at = base + offset;
    }
    static int close(thandle_t handle) {
        delete static_cast<Stream*>(handle);
        return 0;
    }
    static toff_t size(thandle_t handle) { return static_cast<Stream*>(handle)->file.size(); }
};

/// Whether a warning of this part of libtiff means that it makes pixels up.
bool isDamage(std::string_view part) {
    return part.starts_with("Fax") || part == "JPEGLib";
}

TIFF* openFirst(const PictureFile& file) {
    TIFFSetErrorHandler(nullptr);
    TIFFSetWarningHandler(nullptr);
    std::unique_ptr<Stream> stream(new Stream{file});
    TIFF* tiff = TIFFClientOpen("", "rm", stream.get(), Stream::read, Stream::write, Stream::seek,
                                Stream::close, Stream::size, nullptr, nullptr);
    if (!tiff) giveUp();
    static_cast<void>(stream.release());  // to Stream::close
    return tiff;
}

}  // namespace

TIFFPicture::TIFFPicture(const PictureFile& file) : tiff_(openFirst(file), &TIFFClose) {
    width_ = longField(TIFFTAG_IMAGEWIDTH);
    height_ = longField(TIFFTAG_IMAGELENGTH);
    bits_ = field(TIFFTAG_BITSPERSAMPLE);
    samples_ = field(TIFFTAG_SAMPLESPERPIXEL);
    if (!isWithinPixelBudget(width_, height_) || bits_ < 1 || bits_ > 16 || samples_ < 1) giveUp();
    // libjpeg converts YCbCr; strips and tiles then hold red, green and blue.
    if (field(TIFFTAG_COMPRESSION) == COMPRESSION_JPEG && field(TIFFTAG_PHOTOMETRIC) == PHOTOMETRIC_YCBCR)
        TIFFSetField(handle(), TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
    planes_ = field(TIFFTAG_PLANARCONFIG) == PLANARCONFIG_SEPARATE ? samples_ : std::uint16_t{1};
    tiled_ = TIFFIsTiled(handle()) != 0;
    chunkWidth_ = tiled_ ? longField(TIFFTAG_TILEWIDTH) : width_;
    chunkHeight_ =
        tiled_ ? longField(TIFFTAG_TILELENGTH) : std::min(longField(TIFFTAG_ROWSPERSTRIP), height_);
    if (!isWithinPixelBudget(chunkWidth_, chunkHeight_)) giveUp();
    const std::size_t samplesTogether = samples_ / planes_;
    chunkRowSize_ = (std::size_t{chunkWidth_} * samplesTogether * bits_ + 7) / 8;
    TIFFSetErrorHandler([](const char*, const char*, va_list) { giveUp(); });
    TIFFSetWarningHandler([](const char* codec, const char*, va_list) {
        if (codec && isDamage(codec)) giveUp();
    });
    const std::uint64_t rows = std::min(chunkHeight_, height_);
    if (chunkRowSize_ * chunkHeight_ > maximumRowsSize || rows * width_ * samples_ > maximumRowsSize)
        giveUp();
}

std::uint16_t TIFFPicture::field(std::uint32_t tag) const {
    std::uint16_t value = 0;
    return TIFFGetFieldDefaulted(handle(), tag, &value) ? value : std::uint16_t{0};
}

std::uint32_t TIFFPicture::longField(std::uint32_t tag) const {
    std::uint32_t value = 0;
    return TIFFGetFieldDefaulted(handle(), tag, &value) ? value : 0;
}

std::span<const std::uint8_t> TIFFPicture::readRows(std::uint32_t top, bool scaled) {
    const std::uint32_t rows = std::min(chunkHeight_, height_ - top);
    if (planes_ == 1 && bits_ == 8 && chunkWidth_ == width_) {
        readChunk(0, top, 0);
        return std::span(chunk_).first(rows * chunkRowSize_);
    }
    rows_.resize(std::size_t{rows} * width_ * samples_);
    for (std::uint16_t plane = 0; plane < planes_; ++plane)
        for (std::uint32_t left = 0; left < width_; left += chunkWidth_) {
            readChunk(left, top, plane);
            copyChunk(left, rows, plane, scaled);
        }
    return rows_;
}

void TIFFPicture::readChunk(std::uint32_t left, std::uint32_t top, std::uint16_t plane) {
    const std::uint32_t rows = tiled_ ? chunkHeight_ : std::min(chunkHeight_, height_ - top);
    const auto wanted = static_cast<tmsize_t>(rows * chunkRowSize_);
    chunk_.resize(static_cast<std::size_t>(wanted));
    const auto count = tiled_ ? TIFFReadEncodedTile(handle(), TIFFComputeTile(handle(), left, top, 0, plane),
                                                    chunk_.data(), wanted)
                              : TIFFReadEncodedStrip(handle(), TIFFComputeStrip(handle(), top, plane),
                                                     chunk_.data(), wanted);
    if (count != wanted) giveUp();
}

void TIFFPicture::copyChunk(std::uint32_t left, std::uint32_t rows, std::uint16_t plane, bool scaled) {
    const std::size_t together = samples_ / planes_;
    const std::size_t columns = std::min(chunkWidth_, width_ - left);
    const std::uint32_t maximum = (1U << bits_) - 1;
    for (std::size_t y = 0; y < rows; ++y) {
        auto* to = &rows_[(y * width_ + left) * samples_ + plane];
        for (std::size_t i = 0; i < columns * together; ++i) {
            const std::uint32_t value = sample(y, i);
            *to = static_cast<std::uint8_t>(scaled ? (value * 255 + maximum / 2) / maximum : value);
            to += planes_ == 1 ? 1 : samples_;
        }
    }
}

std::uint32_t TIFFPicture::sample(std::size_t row, std::size_t index) const {
    const auto* bytes = chunk_.data() + row * chunkRowSize_;
    if (bits_ == 8) return bytes[index];
    if (bits_ == 16) {
        std::uint16_t value;  // libtiff has converted it to native byte order
        std::memcpy(&value, bytes + index * 2, 2);
        return value;
    }
    std::uint32_t value = 0;
    for (std::size_t bit = index * bits_; bit < (index + 1) * bits_; ++bit)
        value = value << 1 | (bytes[bit / 8] >> (7 - bit % 8) & 1U);
    return value;
}

}  // namespace quorvantis::decoder
