#include "support/UTF8.h"

#include <bit>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace quorvantis {

namespace {

constexpr std::string_view replacement = "\xEF\xBF\xBD";

struct Lead {
    std::size_t length;             // of the whole sequence; 0 if the byte cannot start one
    std::uint8_t minimum, maximum;  // of the second byte
};

Lead lead(std::uint8_t byte) {
    if (byte < 0x80) return {1, 0, 0};
    if (byte < 0xC2) return {0, 0, 0};
    if (byte < 0xE0) return {2, 0x80, 0xBF};
    if (byte < 0xF0)
        return {3, std::uint8_t(byte == 0xE0 ? 0xA0 : 0x80), std::uint8_t(byte == 0xED ? 0x9F : 0xBF)};
    if (byte < 0xF5)
        return {4, std::uint8_t(byte == 0xF0 ? 0x90 : 0x80), std::uint8_t(byte == 0xF4 ? 0x8F : 0xBF)};
    return {0, 0, 0};
}

struct Part {
    std::size_t length;
    bool wellFormed;
};

/// The code point at the front, or the maximal ill-formed part.
Part front(std::string_view bytes) {
    const Lead lead = quorvantis::lead(static_cast<std::uint8_t>(bytes[0]));
    if (lead.length == 0) return {1, false};
    for (std::size_t i = 1; i < lead.length; ++i) {
        const auto byte = i < bytes.size() ? static_cast<std::uint8_t>(bytes[i]) : std::uint8_t{0};
        const bool fits = i == 1 ? byte >= lead.minimum && byte <= lead.maximum : (byte & 0xC0) == 0x80;
        if (!fits) return {i, false};
    }
    return {lead.length, true};
}

/// The number of leading ASCII bytes, but for the last seven of the text.
std::size_t asciiPrefix(std::string_view bytes) {
    static_assert(std::endian::native == std::endian::little);
    std::size_t length = 0;
    for (std::uint64_t eight; bytes.size() - length >= sizeof eight; length += sizeof eight) {
        std::memcpy(&eight, bytes.data() + length, sizeof eight);
        const std::uint64_t others = eight & 0x8080808080808080u;
        if (others != 0) return length + static_cast<std::size_t>(std::countr_zero(others)) / 8;
    }
    return length;
}

std::size_t validPrefix(std::string_view bytes) {
    std::size_t length = 0;
    while (length < bytes.size()) {
        length += asciiPrefix(bytes.substr(length));
        if (length == bytes.size()) break;
        const Part part = front(bytes.substr(length));
        if (!part.wellFormed) break;
        length += part.length;
    }
    return length;
}

}  // namespace

bool isValidUTF8(std::string_view bytes) {
    return validPrefix(bytes) == bytes.size();
}

std::string repairedUTF8(std::string_view bytes) {
    std::string text;
    for (;;) {
        const std::size_t valid = validPrefix(bytes);
        text += bytes.substr(0, valid);
        if (valid == bytes.size()) return text;
        bytes.remove_prefix(valid);
        text += replacement;
        bytes.remove_prefix(front(bytes).length);
    }
}

}  // namespace quorvantis
