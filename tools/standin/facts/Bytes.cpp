#include "facts/Bytes.h"

namespace quorvantis::standin {

static void append(std::string& text, std::uint32_t codePoint) {
    const auto add = [&](std::uint32_t byte) { text += static_cast<char>(byte); };
    const auto addTail = [&](std::uint32_t bits) { add(0x80 | (bits & 0x3F)); };
    if (codePoint < 0x80) return add(codePoint);
    if (codePoint < 0x800) {
        add(0xC0 | codePoint >> 6);
    } else {
        add(0xE0 | codePoint >> 12);
        addTail(codePoint >> 6);
    }
    addTail(codePoint);
}

std::string Bytes::characters(std::size_t unitSize) const {
    std::string text;
    for (std::size_t at = 0; at < size() && number(at, unitSize) != 0; at += unitSize)
        append(text, number(at, unitSize));
    return text;
}

}  // namespace quorvantis::standin
