#include "support/UUID.h"

#include <cstdlib>
#include <sys/random.h>

namespace quorvantis {

namespace {

constexpr std::size_t textLength = 36;

bool isHyphenPlace(std::size_t place) {
    return place == 8 || place == 13 || place == 18 || place == 23;
}

int digitValue(char digit) {
    if (digit >= '0' && digit <= '9') return digit - '0';
    if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
    if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
    return -1;
}

std::string text(const UUID& uuid, std::string_view digits) {
    std::string text;
    text.reserve(textLength);
    for (const std::uint8_t byte : uuid.bytes) {
        if (isHyphenPlace(text.size())) text += '-';
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
    return text;
}

}  // namespace

// Not by libuuid: its generator makes four more system calls than this, and they are felt in every tool call.
UUID UUID::random() {
    UUID uuid;
    if (getentropy(uuid.bytes.data(), uuid.bytes.size()) != 0) std::abort();
    uuid.bytes[6] = (uuid.bytes[6] & 0x0F) | 0x40;  // version 4
    uuid.bytes[8] = (uuid.bytes[8] & 0x3F) | 0x80;  // variant of RFC 4122
    return uuid;
}

std::optional<UUID> UUID::parse(std::string_view text) {
    if (text.size() != textLength) return std::nullopt;
    UUID uuid;
    std::size_t digits = 0;
    for (std::size_t place = 0; place < textLength; ++place) {
        if (isHyphenPlace(place)) {
            if (text[place] != '-') return std::nullopt;
            continue;
        }
        const int value = digitValue(text[place]);
        if (value < 0) return std::nullopt;
        std::uint8_t& byte = uuid.bytes[digits++ / 2];
        byte = static_cast<std::uint8_t>(byte << 4 | value);
    }
    return uuid;
}

std::string UUID::upperCaseText() const {
    return text(*this, "0123456789ABCDEF");
}

std::string UUID::lowerCaseText() const {
    return text(*this, "0123456789abcdef");
}

}  // namespace quorvantis
