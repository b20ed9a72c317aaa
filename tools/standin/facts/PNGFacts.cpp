#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "decoder/picture/Orientation.h"
#include "facts/Bytes.h"
#include "facts/Formats.h"
#include "facts/PictureFacts.h"

namespace quorvantis::standin {

namespace {

constexpr std::uint32_t coloured = 2, withPalette = 1, withAlpha = 4;
constexpr std::size_t longestName = 79;

void takeHeader(const Bytes& header, PictureFacts& facts) {
    const auto type = header.byte(9);
    facts.bitsPerComponent = type & withPalette ? 8 : header.byte(8);
    facts.colorModel = type & coloured ? "RGB" : "Gray";
    facts.hasAlpha = (type & withAlpha) != 0;
    facts.frameCount = 1;
}

void takeChunk(std::string_view name, const Bytes& data, PictureFacts& facts) {
    if (name == "IHDR") takeHeader(data, facts);
    if (name == "tRNS") facts.hasAlpha = true;
    if (name == "acTL") facts.frameCount = data.number(0, 4);
    if (name == "eXIf") facts.orientation = decoder::exifOrientation(data.span());
    if (name == "iCCP") facts.profileName = data.part(0, longestName).characters(1);
    if (name == "sRGB" && !facts.profileName) facts.profileName = "sRGB IEC61966-2.1";
}

}  // namespace

PictureFacts pngFacts(std::span<const std::uint8_t> bytes) {
    const Bytes file(bytes);
    PictureFacts facts;
    for (std::size_t at = 8; at < file.size();) {
        const std::size_t size = file.number(at, 4);
        takeChunk(file.part(at + 4, 4).text(), file.part(at + 8, size), facts);
        at += 12 + size;
    }
    return facts;
}

}  // namespace quorvantis::standin
