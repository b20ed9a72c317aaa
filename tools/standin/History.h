#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Database.h"
#include "HistoryEntry.h"
#include "SearchText.h"
#include "json/UUID.h"

namespace quorvantis::standin {

/// A picture of the history whose file is known.
struct Asset {
    std::string path;  // any bytes
    std::string uti;   // uniform type identifier, from the file's first bytes
    UUID entryID;
    std::int64_t byteCount = 0;
    std::string sha256;  // identifies the picture in references and requests
    std::optional<std::string> pixelHash;
    std::int64_t pixelWidth = 0;
    std::int64_t pixelHeight = 0;
};

/// The history: entries in a database, and the files of copied pictures in the folder "Pictures" beside it,
/// each named by the SHA-256 of its bytes. Other processes may change both at any time. What fails throws
/// std::runtime_error.
class History {
  public:
    /// Makes the database when it is missing.
    explicit History(const std::string& path);

    Database& database() { return database_; }
    const std::string& pictureFolder() const { return pictures_; }

    std::int64_t entryCount();
    std::int64_t pictureCount();

    /// Calls the function with the entries that match, the newest first, until it returns false.
    void search(const SearchQuery& query, const std::function<bool(const HistoryEntry&)>& take);
    std::optional<HistoryEntry> entry(const UUID& id);
    /// Calls the function with all entries, the newest first.
    void forEach(const std::function<void(const HistoryEntry&)>& take);
    /// The newest picture with this hash of its file, or of its pixels, of those whose files are there; else
    /// the newest.
    std::optional<Asset> pictureOfFile(std::string_view sha256);
    std::optional<Asset> pictureOfPixels(std::string_view pixelHash);

    /// Adds an entry, in the caller's transaction. Returns its number; empty when its identifier is taken.
    std::optional<std::int64_t> insert(const HistoryEntry& entry);
    void erase(std::int64_t number);

    /// Adds what was copied now. If the newest copy is the same, that one gets the time of this one instead.
    /// A picture's file, which `pictureFile` names, is moved to the folder of pictures.
    void addCopy(HistoryEntry entry, const std::optional<std::string>& pictureFile = std::nullopt);
    /// Adds the entries whose identifiers are new. Returns their count.
    std::size_t addAll(const std::vector<HistoryEntry>& entries);
    /// Removes the entry, and its pictures when no other has them. Returns false if there is none.
    bool remove(const UUID& id);
    /// Removes everything.
    void clear();

  private:
    HistoryEntry load(std::int64_t number);
    std::vector<HelperRepresentation> representationsOf(std::int64_t item);
    std::optional<Asset> picture(const std::string& condition, std::string_view hash);
    std::optional<std::int64_t> newestCopy();
    std::int64_t freeNumber(Date time);
    void removeUnusedPictures();

    Database database_;
    std::string pictures_;
    // Of the entry inserted last: after it, others of the same time need not look for a number for long.
    std::optional<std::int64_t> lastWanted_;
    std::int64_t lastNumber_ = 0;
};

}  // namespace quorvantis::standin
