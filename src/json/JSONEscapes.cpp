#include "json/JSONEscapes.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>
#include <string_view>
#include <utf8proc.h>

#include "support/Hexadecimal.h"

namespace quorvantis {

namespace {

constexpr char mark = '\xFF', quotationMark = '\xFE', backslash = '\xFD';  // no bytes of UTF-8
constexpr std::size_t shortSize = 2, longSize = 6;                         // of \n and \u000a

/// For each letter of a short escape, masked or not, what it stands for; otherwise 0.
constexpr std::array<char, 256> meanings = [] {
    std::array<char, 256> table{};
    table['"'] = table[static_cast<std::uint8_t>(quotationMark)] = '"';
    table['\\'] = table[static_cast<std::uint8_t>(backslash)] = '\\';
    table['/'] = '/', table['b'] = '\b', table['f'] = '\f';
    table['n'] = '\n', table['r'] = '\r', table['t'] = '\t';
    return table;
}();

char meaning(char letter) {
    return meanings[static_cast<std::uint8_t>(letter)];
}

/// The code unit of the long escape at the front, which begins with that byte.
std::optional<char32_t> codeUnit(std::string_view text, char first) {
    if (text.size() < longSize || text[0] != first || text[1] != 'u') return std::nullopt;
    char32_t unit = 0;
    for (const char digit : text.substr(shortSize, longSize - shortSize)) {
        const auto value = hexadecimalValue(digit);
        if (!value) return std::nullopt;
        unit = unit << 4 | *value;
    }
    return unit;
}

struct LongEscape {
    std::size_t size = 0;  // of the escape, or of two that are a surrogate pair; 0 if malformed
    char32_t codePoint = 0;
};

LongEscape longEscape(std::string_view text) {
    const auto unit = codeUnit(text, text[0]);
    if (!unit || (*unit & 0xFC00) == 0xDC00) return {};
    if ((*unit & 0xFC00) != 0xD800) return {longSize, *unit};
    const auto trailing = codeUnit(text.substr(longSize), text[0]);
    if (!trailing || (*trailing & 0xFC00) != 0xDC00) return {};
    return {2 * longSize, 0x10000 + ((*unit & 0x3FF) << 10) + (*trailing & 0x3FF)};
}

/// Masks the escape at the front and returns its size; 0 if malformed.
std::size_t maskEscape(std::span<char> text) {
    if (text.size() >= shortSize && meaning(text[1]) != 0) {
        text[0] = mark;
        if (text[1] == '"') text[1] = quotationMark;
        if (text[1] == '\\') text[1] = backslash;
        return shortSize;
    }
    const std::size_t size = longEscape({text.data(), text.size()}).size;
    for (std::size_t unit = 0; unit < size; unit += longSize) text[unit] = mark;
    return size;
}

char* encode(char32_t codePoint, char* to) {
    return to + utf8proc_encode_char(static_cast<utf8proc_int32_t>(codePoint),
                                     reinterpret_cast<utf8proc_uint8_t*>(to));
}

}  // namespace

bool maskEscapes(std::span<char> text) {
    while (char* const escape = static_cast<char*>(std::memchr(text.data(), '\\', text.size()))) {
        text = text.subspan(static_cast<std::size_t>(escape - text.data()));
        const std::size_t size = maskEscape(text);
        if (size == 0) return false;
        text = text.subspan(size);
    }
    return true;
}

bool hasMaskedEscape(std::string_view string) {
    return string.find(mark) != string.npos;
}

std::string_view unmaskEscapes(std::span<char> string) {
    std::string_view rest(string.data(), string.size());
    char* to = string.data();
    for (;;) {
        const std::string_view plain = rest.substr(0, rest.find(mark));
        std::memmove(to, plain.data(), plain.size());
        to += plain.size();
        rest.remove_prefix(plain.size());
        if (rest.empty()) return {string.data(), to};
        if (const char character = meaning(rest[1])) {
            *to++ = character;
            rest.remove_prefix(shortSize);
        } else {
            const auto [size, codePoint] = longEscape(rest);
            rest.remove_prefix(size);
            to = encode(codePoint, to);
        }
    }
}

}  // namespace quorvantis
