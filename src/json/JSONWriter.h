#pragma once

#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "json/JSON.h"

namespace quorvantis {

/// JSON that is already written: compact, with bare slashes.
struct JSONText {
    std::string text;
};

/// How `/` is written inside strings.
enum class Slashes { escaped, bare };

/// Writes compact JSON, piece by piece, from texts that are valid UTF-8. Only what must be escaped is, and
/// slashes where it is asked for; everything else is raw UTF-8.
class JSONWriter {
  public:
    /// `enclosing` is the number of containers that will stand around the text, where it is spliced into
    /// others.
    explicit JSONWriter(Slashes slashes, std::size_t enclosing = 0);

    void value(std::same_as<bool> auto truth) { literal(truth ? "true" : "false"); }
    void value(std::integral auto number) requires(!std::same_as<decltype(number), bool>) {
        literal(std::to_string(number));
    }
    void value(std::string_view string);
    void value(const char* string) { value(std::string_view(string)); }
    void value(const std::string& string) { value(std::string_view(string)); }
    void value(JSON value);
    void value(const JSONText& written);
    /// A value that writes itself, as `jsonObject` makes one.
    void value(const std::invocable<JSONWriter&> auto& write) { write(*this); }
    void null() { literal("null"); }
    /// A value as it stands in JSON, without a slash: a number's text, or `null`.
    void literal(std::string_view text);

    void beginArray() { begin('['); }
    void endArray() { end(']'); }
    void beginObject() { begin('{'); }
    void endObject() { end('}'); }
    /// A member's key; its value must follow.
    void key(std::string_view key);

    /// A whole object from keys and values in turn: `object("code", code, "message", message)`.
    template <class... KeysAndValues>
    void object(const KeysAndValues&... keysAndValues) {
        beginObject();
        members(keysAndValues...);
        endObject();
    }

    /// Members of an object that is begun.
    void members() {}
    template <class Value, class... Rest>
    void members(std::string_view memberKey, const Value& memberValue, const Rest&... rest) {
        key(memberKey);
        value(memberValue);
        members(rest...);
    }

    /// What was written. Throws EncodingError when containers were nested too deeply.
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
    bool isTooDeep_ = false;
    std::string text_;
};

/// An object from keys and values in turn, to be written within the same expression: it refers to the values.
template <class... KeysAndValues>
auto jsonObject(const KeysAndValues&... keysAndValues) {
    return [&](JSONWriter& writer) { writer.object(keysAndValues...); };
}

/// One value as JSON. Throws EncodingError.
template <class Value>
JSONText jsonText(const Value& value) {
    JSONWriter writer(Slashes::bare);
    writer.value(value);
    return {writer.take()};
}

}  // namespace quorvantis
