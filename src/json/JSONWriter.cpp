#include "json/JSONWriter.h"

#include <array>
#include <bit>
#include <cstddef>
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

// What each x86-64 and each arm64 has an instruction for.
using Bytes [[gnu::vector_size(16)]] = std::uint8_t;
using Halves [[gnu::vector_size(16)]] = std::uint64_t;

/// The number of leading bytes that need no escape, at most sizeof(Bytes). There must be as many.
template <Slashes slashes>
std::size_t plainPrefix(const char* text) {
    static_assert(std::endian::native == std::endian::little);
    Bytes bytes;
    std::memcpy(&bytes, text, sizeof bytes);
    auto found = (bytes < 0x20) | (bytes == '"') | (bytes == '\\');
    if (slashes == Slashes::escaped) found |= bytes == '/';
    const auto halves = std::bit_cast<Halves>(found);
    if (halves[0] != 0) return static_cast<std::size_t>(std::countr_zero(halves[0])) / 8;
    return 8 + static_cast<std::size_t>(std::countr_zero(halves[1])) / 8;
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
        if (end - from >= std::ptrdiff_t{sizeof(Bytes)}) {
            const std::size_t plain = plainPrefix<slashes>(from);
            std::memcpy(to, from, sizeof(Bytes));
            from += plain, to += plain;
            if (plain == sizeof(Bytes)) continue;
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
    reserve(written.text.size() * 17 / 16);  // most texts have few slashes
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
