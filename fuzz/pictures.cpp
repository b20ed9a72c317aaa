// A picture of any format, decoded in this process and not in the sandbox.

#include <array>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <libheif/heif.h>
#include <optional>
#include <span>
#include <string>

#include "MemoryFile.h"
#include "decoder/formats/Format.h"
#include "decoder/formats/Readers.h"
#include "decoder/picture/GiveUp.h"
#include "decoder/picture/PictureFile.h"
#include "imaging/DecodedPixels.h"
#include "imaging/PixelHasher.h"

namespace quorvantis {

// In place of the library's own: the sanitizers make decoding twenty times as slow, so a picture has at most
// a million pixels, and they are only counted.

bool isWithinPixelBudget(std::int64_t width, std::int64_t height) {
    return width > 0 && height > 0 && width <= 1'000'000 / height;
}

PixelHasher::PixelHasher(std::int64_t width, std::int64_t height)
    : missing_(static_cast<std::uint64_t>(width * height * 4)) {}

void PixelHasher::update(std::span<const std::byte> pixels) {
    missing_ -= pixels.size();
}

std::optional<std::string> PixelHasher::finish() {
    return missing_ == 0 ? std::optional(std::string(64, '0')) : std::nullopt;
}

}  // namespace quorvantis

namespace quorvantis::decoder {

struct GivenUp {};

// In place of the decoder's own, which ends the process. Goes through the codecs.
void giveUp() {
    throw GivenUp();
}

static DecodedPixels read(const PictureFile& file) {
    std::array<std::uint8_t, recognisedBytes> start;
    const auto format = recognisedFormat(std::span(start).first(file.readUpTo(0, start)));
    if (!format) giveUp();
    switch (*format) {
        case Format::png: return readPNG(file);
        case Format::jpeg: return readJPEG(file);
        case Format::bmp: return readBMP(file);
        case Format::ico: return readICO(file);
        case Format::gif: return readGIF(file);
        case Format::webp: return readWebP(file);
        case Format::tiff: return readTIFF(file);
        case Format::heif: return readHEIF(file);
        case Format::jpeg2000: return readJPEG2000(file);
    }
    giveUp();
}

}  // namespace quorvantis::decoder

using namespace quorvantis;

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    static_cast<void>(heif_init(nullptr));
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const fuzz::MemoryFile file(3);  // where a decoder finds its picture
    file.replace({reinterpret_cast<const char*>(data), size});
    try {
        const auto pixels = decoder::read(decoder::PictureFile());
        assert(DecodedPixels::parse(pixels.record()));
    } catch (const decoder::GivenUp&) {}
    return 0;
}
