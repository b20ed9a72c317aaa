#include <cstddef>
#include <cstdint>
#include <span>

#include "facts/Bytes.h"
#include "facts/Formats.h"
#include "facts/PictureFacts.h"

namespace quorvantis::standin {

namespace {

constexpr std::uint32_t graphicControl = 0xF9;

std::size_t paletteSize(std::uint32_t flags) {
    return flags & 0x80 ? std::size_t{3} << ((flags & 7) + 1) : 0;
}

std::size_t afterBlocks(const Bytes& file, std::size_t at) {
    while (const auto size = file.byte(at)) at += 1 + size;
    return at + 1;
}

}  // namespace

PictureFacts gifFacts(std::span<const std::uint8_t> bytes) {
    const Bytes file(bytes);
    bool hasAlpha = false;
    std::int64_t frames = 0;
    std::size_t at = 13 + paletteSize(file.byte(10));
    for (auto kind = file.byte(at); kind == '!' || kind == ','; kind = file.byte(at)) {
        if (kind == ',') {
            ++frames;
            at = afterBlocks(file, at + 11 + paletteSize(file.byte(at + 9)));
        } else {
            if (frames == 0 && file.byte(at + 1) == graphicControl) hasAlpha = file.byte(at + 3) & 1;
            at = afterBlocks(file, at + 2);
        }
    }
    return {.bitsPerComponent = 8, .hasAlpha = hasAlpha, .colorModel = "RGB", .frameCount = frames};
}

}  // namespace quorvantis::standin
