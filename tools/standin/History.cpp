#include "History.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unistd.h>
#include <utility>
#include <vector>

#include "Columns.h"
#include "Database.h"
#include "HistoryEntry.h"
#include "Schema.h"
#include "SearchText.h"
#include "json/UUID.h"
#include "state/HistoryRecords.h"
#include "support/Paths.h"
#include "support/UTF8.h"

namespace quorvantis::standin {

History::History(const std::string& path)
    : database_(path, std::string(schema) + searchedTable, schemaVersion),
      pictures_(joinedPath(parentPath(path), "Pictures")) {}

std::int64_t History::entryCount() {
    Rows rows = database_.run("select count(*) from entry");
    rows.next();
    return rows.integer(0);
}

std::int64_t History::pictureCount() {
    Rows rows = database_.run(
        "select count(*) from imageMetadata join representation on number = representation"
        " where storagePath is not null and sha256 is not null");
    rows.next();
    return rows.integer(0);
}

void History::search(const SearchQuery& query, const std::function<bool(const HistoryEntry&)>& take) {
    const std::string indexQuery = query.indexQuery();
    const std::string all = "select rowid, text from searched ";
    Rows rows = indexQuery.empty()
                    ? database_.run(all + "order by rowid desc")
                    : database_.run(all + "where searched match ? order by rowid desc", indexQuery);
    while (rows.next())
        if (query.matches(rows.text(1)) && !take(load(rows.integer(0)))) return;
}

void History::forEach(const std::function<void(const HistoryEntry&)>& take) {
    Rows rows = database_.run("select number from entry order by number desc");
    while (rows.next()) take(load(rows.integer(0)));
}

std::optional<HistoryEntry> History::entry(const UUID& id) {
    Rows rows = database_.run("select number from entry where id = ?", id);
    if (!rows.next()) return std::nullopt;
    return load(rows.integer(0));
}

HistoryEntry History::load(std::int64_t number) {
    static const std::string ofEntry = "select " + columnNames<HelperEntry>() + ", " +
                                       columnNames<HistoryEntry>() +
                                       ", hasFilePaths from entry where number = ?";
    static const std::string ofItem =
        "select number, " + columnNames<HelperClipboardItem>() + " from item where entry = ? order by number";
    HistoryEntry entry;
    bool hasFilePaths = false;
    {
        Rows rows = database_.run(ofEntry, number);
        if (rows.next()) rows.read(readColumns(rows, readColumns(rows, 0, entry.entry), entry), hasFilePaths);
    }
    Rows items = database_.run(ofItem, number);
    while (items.next()) {
        HelperClipboardItem item;
        readColumns(items, 1, item);
        item.representations = representationsOf(items.integer(0));
        entry.entry.items.push_back(std::move(item));
    }
    if (!hasFilePaths) return entry;
    auto& paths = entry.filePaths.emplace();
    Rows rows = database_.run("select path from filePath where entry = ? order by position", number);
    while (rows.next()) paths.emplace_back(rows.text(0));
    return entry;
}

std::vector<HelperRepresentation> History::representationsOf(std::int64_t item) {
    static const std::string ofItem = "select m.representation, " + columnNames<HelperRepresentation>() +
                                      ", " + columnNames<HelperImageMetadata>() +
                                      " from representation r left join imageMetadata m"
                                      " on m.representation = r.number where item = ? order by r.number";
    std::vector<HelperRepresentation> found;
    Rows rows = database_.run(ofItem, item);
    while (rows.next()) {
        HelperRepresentation& representation = found.emplace_back();
        std::optional<std::int64_t> image;
        rows.read(0, image);
        const int column = readColumns(rows, 1, representation);
        if (image) readColumns(rows, column, representation.imageMetadata.emplace());
        if (auto& path = representation.storagePath) path = repairedUTF8(*path);
    }
    return found;
}

std::optional<Asset> History::pictureOfFile(std::string_view sha256) {
    return picture("r.sha256 = ?", sha256);
}

std::optional<Asset> History::pictureOfPixels(std::string_view pixelHash) {
    return picture("r.sha256 is not null and m.pixelHash = ?", pixelHash);
}

std::optional<Asset> History::picture(const std::string& condition, std::string_view hash) {
    std::optional<Asset> found;
    Rows rows = database_.run(
        "select storagePath, uti, e.id, byteCount, sha256, pixelHash, pixelWidth, pixelHeight"
        " from representation r join imageMetadata m on m.representation = r.number"
        " join item i on i.number = r.item join entry e on e.number = i.entry"
        " where storagePath is not null and " +
            condition + " order by e.number desc",
        hash);
    while (rows.next()) {
        Asset asset;
        int column = 0;
        const auto read = [&](auto&... members) { (rows.read(column++, members), ...); };
        read(asset.path, asset.uti, asset.entryID, asset.byteCount, asset.sha256, asset.pixelHash,
             asset.pixelWidth, asset.pixelHeight);
        if (access(asset.path.c_str(), R_OK) == 0) return asset;
        if (!found) found = std::move(asset);
    }
    return found;
}

}  // namespace quorvantis::standin
