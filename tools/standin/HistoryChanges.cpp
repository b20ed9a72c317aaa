#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <errno.h>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <optional>
#include <stdio.h>
#include <string>
#include <system_error>
#include <tuple>
#include <unistd.h>
#include <utility>
#include <vector>

#include "Columns.h"
#include "Database.h"
#include "History.h"
#include "HistoryEntry.h"
#include "Schema.h"
#include "SearchText.h"
#include "json/Date.h"
#include "json/UUID.h"
#include "platform/Descriptors.h"
#include "state/HistoryRecords.h"
#include "support/Files.h"

namespace quorvantis::standin {

namespace {

namespace fs = std::filesystem;

constexpr double maximumMilliseconds = 9e15;  // a double has each integer up to it

std::int64_t milliseconds(Date time) {
    const double value = time.secondsSinceReferenceDate * 1000;
    return static_cast<std::int64_t>(std::clamp(value, -maximumMilliseconds, maximumMilliseconds));
}

/// The contents of the entry's representations, in order.
std::vector<std::string> contents(const HistoryEntry& entry) {
    std::vector<std::string> contents;
    for (const auto& item : entry.entry.items)
        for (const auto& r : item.representations)
            contents.push_back(r.uti + " " + r.sha256.value_or("") + " " + r.inlineText.value_or(""));
    return contents;
}

bool isSameCopy(const HistoryEntry& one, const HistoryEntry& other) {
    return one.kind == other.kind && contents(one) == contents(other);
}

/// Makes the disk keep what was written to a file or a folder.
void synchronize(const std::string& path) {
    const platform::Descriptor opened(open(path.c_str(), O_RDONLY | O_CLOEXEC));
    fsync(opened.get());
}

/// A picture that was being added may have another name, for a while.
bool isInUse(const fs::directory_entry& file) {
    std::error_code error;
    const auto age = fs::file_time_type::clock::now() - file.last_write_time(error);
    return file.path().filename().native().starts_with('.') && age < std::chrono::hours(1);
}

}  // namespace

std::int64_t History::freeNumber(Date time) {
    const std::int64_t wanted = milliseconds(time);
    std::int64_t number = wanted == lastWanted_ ? lastNumber_ + 1 : wanted;
    for (;; ++number) {
        Rows rows = database_.run("select 1 from entry where number = ?", number);
        if (rows.next()) continue;
        lastWanted_ = wanted;
        return lastNumber_ = number;
    }
}

std::optional<std::int64_t> History::insert(const HistoryEntry& entry) {
    {
        Rows rows = database_.run("select 1 from entry where id = ?", entry.entry.id);
        if (rows.next()) return std::nullopt;
    }
    const std::int64_t number = freeNumber(entry.entry.createdAt);
    insertRow(database_, "entry", "number, hasFilePaths, ", std::tuple(number, entry.filePaths.has_value()),
              entry.entry, entry);
    std::int64_t position = 0;
    for (const auto& path : entry.filePaths.value_or(std::vector<std::string>()))
        database_.run("insert into filePath values (?, ?, ?)", number, position++, path);
    for (const auto& item : entry.entry.items) {
        insertRow(database_, "item", "entry, ", std::tuple(number), item);
        const std::int64_t itemNumber = database_.lastNumber();
        for (const auto& representation : item.representations) {
            insertRow(database_, "representation", "item, ", std::tuple(itemNumber), representation);
            if (representation.imageMetadata)
                insertRow(database_, "imageMetadata", "representation, ", std::tuple(database_.lastNumber()),
                          *representation.imageMetadata);
        }
    }
    database_.run("insert into searched (rowid, text) values (?, ?)", number, searchedText(entry));
    return number;
}

void History::erase(std::int64_t number) {
    database_.run("delete from searched where rowid = ?", number);
    database_.run("delete from entry where number = ?", number);
}

std::optional<std::int64_t> History::newestCopy() {
    Rows rows = database_.run(
        "select number from entry where number not in (select entry from knownFile where entry is not null)"
        " order by number desc limit 1");
    return rows.next() ? std::optional(rows.integer(0)) : std::nullopt;
}

void History::addCopy(HistoryEntry entry, const std::optional<std::string>& pictureFile) {
    database_.inTransaction([&] {
        if (pictureFile) {
            const std::string& place = *entry.entry.items[0].representations[0].storagePath;
            synchronize(*pictureFile);
            if (rename(pictureFile->c_str(), place.c_str()) != 0) throw FileError::system(errno);
            synchronize(pictures_);
        }
        if (const auto newest = newestCopy()) {
            const HistoryEntry former = load(*newest);
            if (isSameCopy(former, entry)) {
                erase(*newest);
                entry.entry.id = former.entry.id;
            }
        }
        insert(entry);
    });
}

std::size_t History::addAll(const std::vector<HistoryEntry>& entries) {
    // The oldest first; of several at one time, the first is the newest.
    std::vector<std::size_t> order;
    for (std::size_t i = 0; i < entries.size(); ++i) order.push_back(i);
    std::sort(order.begin(), order.end(), [&](std::size_t one, std::size_t other) {
        const Date time = entries[one].entry.createdAt, otherTime = entries[other].entry.createdAt;
        return time != otherTime ? time < otherTime : one > other;
    });
    std::size_t added = 0;
    database_.inTransaction([&] {
        for (const std::size_t i : order) added += insert(entries[i]).has_value();
    });
    return added;
}

bool History::remove(const UUID& id) {
    bool isFound = false;
    database_.inTransaction([&] {
        std::optional<std::int64_t> number;
        {
            Rows rows = database_.run("select number from entry where id = ?", id);
            if (rows.next()) number = rows.integer(0);
        }
        if (number) erase(*number);
        isFound = number.has_value();
    });
    removeUnusedPictures();
    return isFound;
}

void History::clear() {
    database_.inTransaction([&] {
        database_.run("delete from knownFile");
        database_.run("delete from entry");
        database_.run("drop table searched");
        database_.run(searchedTable);
    });
    removeUnusedPictures();
}

void History::removeUnusedPictures() {
    // In a transaction, no other process is between the file and the row that names it.
    database_.inTransaction([&] {
        std::error_code error;
        for (const auto& file : fs::directory_iterator(pictures_, error)) {
            Rows rows = database_.run("select 1 from representation where sha256 = ? and storagePath = ?",
                                      file.path().filename().native(), file.path().native());
            if (!rows.next() && !isInUse(file)) fs::remove(file.path(), error);
        }
    });
    Rows rows = database_.run("pragma wal_checkpoint(truncate)");
    rows.next();
}

}  // namespace quorvantis::standin
