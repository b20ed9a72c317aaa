#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "json/JSONRecord.h"
#include "state/HistoryRecords.h"

namespace quorvantis::standin {

/// A history entry with the summary of it that the broker gives to agents.
struct StandinEntry {
    HelperEntry entry;
    std::string kind;
    std::string preview;
    std::string detail;
    std::optional<std::string> sourceApplication;
    std::optional<std::string> text;
    std::optional<std::vector<std::string>> filePaths;

    static constexpr auto fields() {
        using M = StandinEntry;
        return std::tuple(Field("entry", &M::entry), Field("kind", &M::kind), Field("preview", &M::preview),
                          Field("detail", &M::detail), Field("sourceApplication", &M::sourceApplication),
                          Field("text", &M::text), Field("filePaths", &M::filePaths));
    }
};

/// The history: a file with a JSON array of entries, and entries beside it that are never written there. The
/// file is read anew for each request, so that who edits it sees the change at once.
class HistoryFile {
  public:
    explicit HistoryFile(std::string path, std::vector<StandinEntry> others = {})
        : path_(std::move(path)), others_(std::move(others)) {}

    const std::string& path() const { return path_; }

    /// All entries, the newest first. Throws FileError or DecodingError.
    std::vector<StandinEntry> entries() const;
    /// Makes an empty history when there is no file.
    void makeIfMissing() const;
    /// Puts a text copied just now in front.
    void add(std::string_view text) const;

    /// The entries in which every word of the query occurs, in whatever case.
    std::vector<StandinEntry> matching(std::string_view query) const;
    std::optional<StandinEntry> entry(std::string_view id) const;

  private:
    std::vector<StandinEntry> entriesOfFile() const;

    std::string path_;
    std::vector<StandinEntry> others_;
};

}  // namespace quorvantis::standin
