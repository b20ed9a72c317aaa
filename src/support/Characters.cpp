#include "support/Characters.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utf8proc.h>

namespace quorvantis {

namespace {

constexpr std::int32_t capitalIWithDot = 0x130;

/// Removes the first code point from the text and returns it.
std::int32_t takeCodePoint(std::string_view& text) {
    std::int32_t codePoint = 0;
    const auto size = utf8proc_iterate(reinterpret_cast<const std::uint8_t*>(text.data()),
                                       static_cast<utf8proc_ssize_t>(text.size()), &codePoint);
    text.remove_prefix(size > 0 ? static_cast<std::size_t>(size) : 1);
    return codePoint;
}

void append(std::string& text, std::int32_t codePoint) {
    std::array<std::uint8_t, 4> bytes;
    const auto size = utf8proc_encode_char(codePoint, bytes.data());
    text.append(reinterpret_cast<const char*>(bytes.data()), static_cast<std::size_t>(size));
}

bool isSpace(std::int32_t codePoint) {
    constexpr std::int32_t nextLine = 0x85, zeroWidthSpace = 0x200B;
    if ((codePoint >= '\t' && codePoint <= '\r') || codePoint == nextLine || codePoint == zeroWidthSpace)
        return true;
    const auto category = utf8proc_category(codePoint);
    return category == UTF8PROC_CATEGORY_ZS || category == UTF8PROC_CATEGORY_ZL ||
           category == UTF8PROC_CATEGORY_ZP;
}

}  // namespace

std::size_t characterCount(std::string_view text) {
    if (text.empty()) return 0;
    std::size_t count = 1;
    std::int32_t state = 0;
    for (std::int32_t last = takeCodePoint(text); !text.empty();) {
        const std::int32_t next = takeCodePoint(text);
        if (utf8proc_grapheme_break_stateful(last, next, &state)) ++count;
        last = next;
    }
    return count;
}

bool isCharacterBoundary(std::string_view text, std::size_t position) {
    if (position == 0 || position == text.size()) return true;
    std::size_t before = position - 1;
    while (before > 0 && (text[before] & 0xC0) == 0x80) --before;
    std::string_view rest = text.substr(before);
    const std::int32_t last = takeCodePoint(rest);
    return utf8proc_grapheme_break(last, takeCodePoint(rest));
}

std::string lowerCased(std::string_view text) {
    std::string lower;
    while (!text.empty()) {
        const std::int32_t codePoint = takeCodePoint(text);
        if (codePoint == capitalIWithDot)
            lower += "i\u0307";  // becomes two code points, which utf8proc cannot do
        else
            append(lower, utf8proc_tolower(codePoint));
    }
    return lower;
}

bool isBlank(std::string_view text) {
    while (!text.empty())
        if (!isSpace(takeCodePoint(text))) return false;
    return true;
}

}  // namespace quorvantis
