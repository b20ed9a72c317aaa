#include "json/JSONWriter.h"

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <utility>

#include "json/CodingErrors.h"
#include "json/JSON.h"
#include "support/Hexadecimal.h"
#include "support/UTF8.h"

namespace quorvantis {

namespace {

constexpr std::size_t pieceSize = 512;        // bytes of a string that are escaped at a time
constexpr std::size_t maximumEscapeSize = 6;  // \u001f
constexpr std::size_t initialCapacity = 240;  // bytes, enough for a short message

/// For each byte the letter of its two-character escape; 'u' for a control character written as \u00xx; 0 if
/// it needs no escape.
constexpr std::array<char, 256> escapes = [] {
    std::array<char, 256> table{};
    for (std::size_t control = 0; control < 0x20; ++control) table[control] = 'u';
    table['\b'] = 'b';
    table['\t'] = 't';
    table['\n'] = 'n';
    table['\f'] = 'f';
    table['\r'] = 'r';
    table['"'] = '"';
    table['\\'] = '\\';
    table['/'] = '/';
    return table;
}();

constexpr std::uint64_t everyByte(std::uint8_t byte) {
    return 0x0101010101010101u * byte;
}

// Sets the high bit of each byte that is below `bound` (at most 128). Only the lowest set bit is reliable: a
// borrow can set the bits above it.
constexpr std::uint64_t bytesBelow(std::uint64_t bytes, std::uint8_t bound) {
    return (bytes - everyByte(bound)) & ~bytes & everyByte(0x80);
}

constexpr std::uint64_t bytesEqual(std::uint64_t bytes, char byte) {
    return bytesBelow(bytes ^ everyByte(static_cast<std::uint8_t>(byte)), 1);
}

/// The number of leading bytes, of eight, that need no escape.
template <Slashes slashes>
std::size_t plainPrefix(const char* eight) {
    static_assert(std::endian::native == std::endian::little);
    std::uint64_t bytes;
    std::memcpy(&bytes, eight, sizeof bytes);
    std::uint64_t found = bytesBelow(bytes, 0x20) | bytesEqual(bytes, '"') | bytesEqual(bytes, '\\');
    if (slashes == Slashes::escaped) found |= bytesEqual(bytes, '/');
    return static_cast<std::size_t>(std::countr_zero(found)) / 8;
}

/// Writes one byte, escaped if necessary. Both overloads return the end of what they wrote.
template <Slashes slashes>
char* escape(char character, char* to) {
    const char letter = escapes[static_cast<std::uint8_t>(character)];
    if (letter == 0 || (letter == '/' && slashes == Slashes::bare)) return *to = character, to + 1;
    *to++ = '\\', *to++ = letter;
    if (letter != 'u') return to;
    const auto code = static_cast<std::uint8_t>(character);
    *to++ = '0', *to++ = '0', *to++ = lowerCaseDigits[code >> 4], *to++ = lowerCaseDigits[code & 15];
    return to;
}

template <Slashes slashes>
char* escape(std::string_view piece, char* to) {
    const char* const end = piece.data() + piece.size();
    for (const char* from = piece.data(); from != end;) {
        if (end - from >= 8) {
            const std::size_t plain = plainPrefix<slashes>(from);
            std::memcpy(to, from, 8);
            from += plain, to += plain;
            if (plain == 8) continue;
        }
        to = escape<slashes>(*from++, to);
    }
    return to;
}

}  // namespace

JSONWriter::JSONWriter(Slashes slashes, std::size_t enclosing) : slashes_(slashes), depth_(enclosing) {
    text_.reserve(initialCapacity);
}

void JSONWriter::value(std::string_view string) {
    isInvalid_ |= !isValidUTF8(string);
    separate();
    quote(string);
}

void JSONWriter::value(JSON value) {
    switch (value.kind()) {
        case JSON::Kind::null: return null();
        case JSON::Kind::boolean: return this->value(*value.boolean());
        case JSON::Kind::number: return literal(*value.numberText());
        case JSON::Kind::string:
            return separate(), quote(*value.string());  // valid, or it would not have been read
        case JSON::Kind::array:
            beginArray();
            for (const JSON element : value.elements()) this->value(element);
            return endArray();
        case JSON::Kind::object:
            beginObject();
            for (const auto [memberKey, memberValue] : value.members())
                key(memberKey), this->value(memberValue);
            return endObject();
    }
}

// Slashes occur only in strings, so they can be escaped without parsing.
void JSONWriter::value(const JSONText& written) {
    separate();
    std::string_view rest = written.text;
    if (slashes_ == Slashes::escaped)
        for (std::size_t slash; (slash = rest.find('/')) != rest.npos; rest.remove_prefix(slash + 1))
            text_.append(rest.substr(0, slash)).append("\\/");
    text_.append(rest);
}

void JSONWriter::string(const JSONText& written) {
    separate();
    quote(written.text);
}

void JSONWriter::key(std::string_view key) {
    separate();
    quote(key);
    text_ += ':';
    needsComma_ = false;
}

std::string JSONWriter::take() {
    if (isInvalid_) throw EncodingError();
    return std::move(text_);
}

/// Called before each value and each key.
void JSONWriter::separate() {
    if (needsComma_) text_ += ',';
    needsComma_ = true;
}

void JSONWriter::literal(std::string_view text) {
    separate();
    text_ += text;
}

void JSONWriter::begin(char bracket) {
    separate();
    text_ += bracket;
    needsComma_ = false;
    isInvalid_ |= ++depth_ > maximumJSONDepth;
}

void JSONWriter::end(char bracket) {
    text_ += bracket;
    needsComma_ = true;
    --depth_;
}

void JSONWriter::quote(std::string_view string) {
    text_ += '"';
    for (; string.size() > pieceSize; string.remove_prefix(pieceSize))
        escapePiece(string.substr(0, pieceSize));
    escapePiece(string);
    text_ += '"';
}

void JSONWriter::escapePiece(std::string_view piece) {
    std::array<char, pieceSize * maximumEscapeSize> escaped;
    char* const end = slashes_ == Slashes::bare ? escape<Slashes::bare>(piece, escaped.data())
                                                : escape<Slashes::escaped>(piece, escaped.data());
    text_.append(escaped.data(), end);
}

}  // namespace quorvantis
