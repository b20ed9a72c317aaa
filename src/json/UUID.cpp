#include "json/UUID.h"

#include <cstddef>
#include <cstdint>
#include <errno.h>
#include <optional>
#include <string>
#include <string_view>
#include <sys/random.h>

#include "support/Files.h"
#include "support/Hexadecimal.h"

namespace quorvantis {

namespace {

constexpr std::size_t textLength = 36;

bool isHyphenPosition(std::size_t position) {
    return position == 8 || position == 13 || position == 18 || position == 23;
}

std::string text(const UUID& uuid, std::string_view digits) {
    std::string text;
    text.reserve(textLength);
    for (const std::uint8_t byte : uuid.bytes) {
        if (isHyphenPosition(text.size())) text += '-';
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
    return text;
}

}  // namespace

// libuuid's generator makes four more system calls, a measurable part of a tool call.
UUID UUID::random() {
    UUID uuid;
    if (getentropy(uuid.bytes.data(), uuid.bytes.size()) != 0) throw FileError::system(errno);
    uuid.bytes[6] = (uuid.bytes[6] & 0x0F) | 0x40;  // version 4
    uuid.bytes[8] = (uuid.bytes[8] & 0x3F) | 0x80;  // variant of RFC 4122
    return uuid;
}

std::optional<UUID> UUID::parse(std::string_view text) {
    if (text.size() != textLength) return std::nullopt;
    UUID uuid;
    std::size_t digits = 0;
    for (std::size_t position = 0; position < textLength; ++position) {
        if (isHyphenPosition(position)) {
            if (text[position] != '-') return std::nullopt;
            continue;
        }
        const auto value = hexadecimalValue(text[position]);
        if (!value) return std::nullopt;
        std::uint8_t& byte = uuid.bytes[digits++ / 2];
        byte = static_cast<std::uint8_t>(byte << 4 | *value);
    }
    return uuid;
}

std::string UUID::upperCaseText() const {
    return text(*this, upperCaseDigits);
}

std::string UUID::lowerCaseText() const {
    return text(*this, lowerCaseDigits);
}

}  // namespace quorvantis
