#pragma once

#include <memory>
#include <optional>
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
    /// must outlive it.
    static std::optional<JSONDocument> parse(std::string_view text);
    /// Like `parse`, but the document owns the text.
    static std::optional<JSONDocument> parseOwned(std::string text);

    JSON root() const { return JSON(nodes_.data()); }
    JSON operator[](std::string_view key) const { return root()[key]; }

  private:
    friend class JSONBuilder;
    std::unique_ptr<const std::string> text_;
    std::vector<JSONNode> nodes_;
    std::unique_ptr<char[]> unescaped_;  // the strings and keys that were written with escapes
};

}  // namespace quorvantis
