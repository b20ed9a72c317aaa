#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "HistoryEntry.h"

namespace quorvantis::standin {

/// The history: a file with a JSON array of entries, and further entries that are kept in memory only. The
/// file is read for each request, so it may be edited meanwhile. Reading and writing throw FileError or
/// DecodingError.
class HistoryFile {
  public:
    explicit HistoryFile(std::string path, std::vector<HistoryEntry> others = {})
        : path_(std::move(path)), others_(std::move(others)) {}

    const std::string& path() const { return path_; }

    /// All entries, the newest first.
    std::vector<HistoryEntry> entries() const;
    /// Creates the file, without entries, unless it exists.
    void createIfMissing() const;
    /// Adds the text to the file as its first entry.
    void add(std::string_view text) const;

    /// The entries that contain every word of the query, regardless of case and of how accents are composed;
    /// the newest first.
    std::vector<HistoryEntry> matching(std::string_view query) const;
    std::optional<HistoryEntry> entry(std::string_view id) const;

  private:
    std::vector<HistoryEntry> entriesInFile() const;

    std::string path_;
    std::vector<HistoryEntry> others_;
};

}  // namespace quorvantis::standin
