#pragma once

#include <forward_list>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "JSON.h"

namespace quorvantis {

/// A parsed JSON text; owns the memory of its values. Moving it keeps them valid.
class JSONDocument {
  public:
    /// Parses strictly: exactly one value with optional white space around it, valid UTF-8, no lone
    /// surrogates. A leading byte-order mark is skipped; of members with the same key the first one wins.
    /// Returns empty if the text is malformed or nested too deeply. The document refers to the text, which
    /// must outlive it; it has a copy if there are escapes.
    static std::optional<JSONDocument> parse(std::string_view text);
    /// Like `parse`, but the document owns the text.
    static std::optional<JSONDocument> parseOwned(std::string text);

    /// The size of the text in bytes.
    std::size_t size() const { return size_; }
    JSON root() const { return JSON(nodes_.data()); }
    JSON operator[](std::string_view key) const { return root()[key]; }

  private:
    friend class JSONBuilder;
    bool build(std::string_view text);
    void unescape(std::span<char> text);

    std::unique_ptr<std::string> text_;
    std::size_t size_ = 0;
    std::vector<JSONNode> nodes_;
    std::forward_list<std::string> keys_;  // those that were written with escapes
};

}  // namespace quorvantis
