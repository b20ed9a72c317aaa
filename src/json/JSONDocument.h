#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "json/JSON.h"

namespace quorvantis {

/// A JSON text that was read, with the memory of its values. It may be moved; its values stay valid.
class JSONDocument {
  public:
    /// Reads one document, strictly: nothing but white space around it, valid UTF-8, no lone surrogates. A
    /// leading byte-order mark is skipped; of members with the same key the first counts. Nothing when the
    /// text is anything else, is nested too deeply, or holds a number with an exponent that, once the point
    /// is shifted behind the digits, leaves 32 bits. The values look into the text: it must outlive the
    /// document.
    static std::optional<JSONDocument> parse(std::string_view text);
    /// The same for a text that the document keeps.
    static std::optional<JSONDocument> parseOwned(std::string text);

    JSON root() const { return JSON(nodes_.data()); }
    JSON operator[](std::string_view key) const { return root()[key]; }

  private:
    friend class JSONBuilder;
    std::unique_ptr<const std::string> text_;
    std::vector<JSONNode> nodes_;
    std::unique_ptr<char[]> unescaped_;  // the texts that had escapes in them
};

}  // namespace quorvantis
