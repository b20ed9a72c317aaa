#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "HistoryEntry.h"

namespace quorvantis::standin {

/// A query: words that must all occur in a text, also inside its words.
class SearchQuery {
  public:
    explicit SearchQuery(std::string_view query);

    /// What the index must hold, as a query of FTS5; empty when no word has three characters. Texts that
    /// match it may still lack a word.
    std::string indexQuery() const;
    /// Whether every word occurs in the text, which `searchedText` returned.
    bool matches(std::string_view text) const;

  private:
    std::vector<std::string> words_;
};

/// The parts of an entry that are searched, with their case folded and their accents composed (Unicode, 3.13
/// and normalization form C).
std::string searchedText(const HistoryEntry& entry);

}  // namespace quorvantis::standin
