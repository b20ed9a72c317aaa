#pragma once

#include <cstddef>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace quorvantis {

/// The position of a value in a JSON document: its key or index in the container around it, and that
/// container's position, which must outlive this one. The root has no parent.
struct CodingPath {
    const CodingPath* parent = nullptr;
    std::string_view key = {};  // of an object's member; empty for an array's element
    std::size_t index = 0;      // of an array's element

    /// The path in the form "items[0].id"; empty for the root.
    std::string text() const;
};

/// A text is not JSON, or not the JSON of the expected type. `what()` is one sentence for the user.
class DecodingError : public std::runtime_error {
  public:
    /// A required value is absent or null.
    static DecodingError missing(const CodingPath& path);
    /// A value has the wrong type, or the text is not JSON.
    static DecodingError mistyped(const CodingPath& path);

    /// The position of the value, as CodingPath::text.
    const std::string& path() const { return path_; }

  private:
    DecodingError(const char* sentence, std::string path)
        : std::runtime_error(sentence), path_(std::move(path)) {}
    std::string path_;
};

/// A value cannot be written as JSON: a date that is not finite, or containers nested too deeply. `what()` is
/// one sentence for the user.
class EncodingError : public std::runtime_error {
  public:
    EncodingError();
};

/// Returns the value. Throws DecodingError `mistyped` if it is empty.
template <class T>
T required(std::optional<T> value, const CodingPath& path) {
    if (!value) throw DecodingError::mistyped(path);
    return std::move(*value);
}

}  // namespace quorvantis
