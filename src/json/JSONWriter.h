#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "JSON.h"

namespace quorvantis {

/// A serialized JSON value: compact, with unescaped slashes.
struct JSONText {
    std::string text;
};

/// Whether `/` in strings is written as `\/` or as it is.
enum class Slashes { escaped, bare };

/// Writes compact JSON incrementally. Only quotation marks, backslashes, control characters and, if
/// requested, slashes are escaped. Keys must be valid UTF-8.
class JSONWriter {
  public:
    /// `enclosing` is the number of containers into which the text will be inserted; it counts towards the
    /// maximum depth.
    explicit JSONWriter(Slashes slashes, std::size_t enclosing = 0);

    /// Makes room for that many more bytes: a long text then grows without being copied. Memory that stays
    /// untouched costs nothing.
    void reserve(std::size_t size) { text_.reserve(text_.size() + size); }

    void value(std::same_as<bool> auto truth) { literal(truth ? "true" : "false"); }
    void value(std::integral auto number) requires(!std::same_as<decltype(number), bool>) {
        literal(std::to_string(number));
    }
    void value(std::string_view string);
    void value(const char* string) { value(std::string_view(string)); }
    void value(const std::string& string) { value(std::string_view(string)); }
    void value(JSON value);
    void value(const JSONText& written);
    /// JSON text as a string. It is valid UTF-8 and not checked again, which would be felt in a large one.
    void string(const JSONText& written);
    /// A value written by a function, such as the result of `jsonObject`.
    void value(const std::invocable<JSONWriter&> auto& write) { write(*this); }
    void null() { literal("null"); }
    /// Writes JSON text unchanged; a slash in it must be written as this writer would.
    void literal(std::string_view text);

    void beginArray() { begin('['); }
    void endArray() { end(']'); }
    void beginObject() { begin('{'); }
    void endObject() { end('}'); }
    /// A member's key; its value must follow.
    void key(std::string_view key);

    /// Writes an object from alternating keys and values: `object("code", code, "message", message)`.
    template <class... KeysAndValues>
    void object(const KeysAndValues&... keysAndValues) {
        beginObject();
        members(keysAndValues...);
        endObject();
    }

    /// Writes members of the current object from alternating keys and values.
    void members() {}
    template <class Value, class... Rest>
    void members(std::string_view memberKey, const Value& memberValue, const Rest&... rest) {
        key(memberKey);
        value(memberValue);
        members(rest...);
    }

    /// Returns the text. Throws EncodingError if containers were nested too deeply or a string is not valid
    /// UTF-8. Call it once, last.
    std::string take();

  private:
    void separate();
    void begin(char bracket);
    void end(char bracket);
    void quote(std::string_view string);
    void escapePiece(std::string_view piece);

    Slashes slashes_;
    std::size_t depth_;
    bool needsComma_ = false;
    bool isInvalid_ = false;
    std::string text_;
};

/// Returns a function that writes an object from alternating keys and values. It refers to its arguments, so
/// it must be called within the same full expression.
template <class... KeysAndValues>
auto jsonObject(const KeysAndValues&... keysAndValues) {
    return [&](JSONWriter& writer) { writer.object(keysAndValues...); };
}

/// Serializes one value. Throws EncodingError.
template <class Value>
JSONText jsonText(const Value& value) {
    JSONWriter writer(Slashes::bare);
    writer.value(value);
    return {writer.take()};
}

}  // namespace quorvantis
