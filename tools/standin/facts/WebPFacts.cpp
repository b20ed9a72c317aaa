#include <algorithm>
#include <bit>
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

void takeChunk(std::string_view name, const Bytes& data, PictureFacts& facts, std::int64_t& frames) {
    if (name == "VP8X") facts.hasAlpha = (data.byte(0) & 0x10) != 0;
    if (name == "VP8L" && !facts.hasAlpha) facts.hasAlpha = (data.number(1, 4) >> 28 & 1) != 0;
    if (name == "ICCP") facts.profileName = profileDescription(data.span());
    if (name == "EXIF") facts.orientation = decoder::exifOrientation(data.span());
    if (name == "ANMF") ++frames;
}

}  // namespace

PictureFacts webpFacts(std::span<const std::uint8_t> bytes) {
    const Bytes file(bytes, std::endian::little);
    PictureFacts facts = {.bitsPerComponent = 8, .colorModel = "RGB"};
    std::int64_t frames = 0;
    for (std::size_t at = 12; at < file.size();) {
        const std::size_t size = file.number(at + 4, 4);
        takeChunk(file.part(at, 4).text(), file.part(at + 8, size), facts, frames);
        at += 8 + size + size % 2;
    }
    facts.hasAlpha = facts.hasAlpha.value_or(false);
    facts.frameCount = std::max<std::int64_t>(frames, 1);
    return facts;
}

}  // namespace quorvantis::standin
