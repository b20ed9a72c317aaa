#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace quorvantis {

/// A place in a JSON document: the chain of keys and indices that leads there. The root is a path without
/// parent.
struct CodingPath {
    const CodingPath* parent = nullptr;
    std::string_view key = {};  // empty: an array's element
    std::size_t index = 0;

    /// As in "items[0].id"; empty for the root.
    std::string text() const;
};

/// JSON that cannot be read as what it should be. `what()` is one sentence for the user.
class DecodingError : public std::runtime_error {
  public:
    /// A required value is absent or null.
    static DecodingError missing(const CodingPath& path);
    /// A value has the wrong type, or the text is no JSON at all.
    static DecodingError mistyped(const CodingPath& path);

    /// Where the value stands, as CodingPath writes it.
    const std::string& path() const { return path_; }

  private:
    DecodingError(const char* sentence, std::string path)
        : std::runtime_error(sentence), path_(std::move(path)) {}
    std::string path_;
};

/// A value that JSON cannot hold. `what()` is one sentence for the user.
class EncodingError : public std::runtime_error {
  public:
    EncodingError();
};

/// The value, or a DecodingError for one of the wrong type.
template <class T>
T required(std::optional<T> value, const CodingPath& path) {
    if (!value) throw DecodingError::mistyped(path);
    return std::move(*value);
}

}  // namespace quorvantis
