#include "HistoryFile.h"

#include <algorithm>
#include <cstdlib>
#include <list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unistd.h>
#include <utf8proc.h>
#include <utility>
#include <vector>

#include "HistoryEntry.h"
#include "json/JSONFiles.h"
#include "json/JSONRecord.h"
#include "json/UUID.h"
#include "support/Files.h"

namespace quorvantis::standin {

namespace {

/// The text with its case folded and its accents composed (Unicode, 3.13 and normalization form C).
std::string folded(std::string_view text) {
    utf8proc_uint8_t* result = nullptr;
    const auto bytes = reinterpret_cast<const utf8proc_uint8_t*>(text.data());
    const auto options =
        static_cast<utf8proc_option_t>(UTF8PROC_STABLE | UTF8PROC_COMPOSE | UTF8PROC_CASEFOLD);
    const auto size = utf8proc_map(bytes, static_cast<utf8proc_ssize_t>(text.size()), &result, options);
    const std::unique_ptr<utf8proc_uint8_t, decltype(&std::free)> owner(result, &std::free);
    if (size < 0) return std::string(text);
    return {reinterpret_cast<const char*>(result), static_cast<std::size_t>(size)};
}

std::string searchedText(const HistoryEntry& entry) {
    std::string text = entry.kind + "\n" + entry.preview + "\n" + entry.detail;
    for (const auto& more : {entry.sourceApplication, entry.text}) text += "\n" + more.value_or("");
    for (const std::string& path : entry.filePaths.value_or(std::vector<std::string>())) text += "\n" + path;
    return folded(text);
}

bool containsAll(const std::string& text, const std::vector<std::string>& words) {
    return std::all_of(words.begin(), words.end(),
                       [&](const auto& word) { return text.find(word) != text.npos; });
}

std::vector<std::string> words(const std::string& text) {
    constexpr std::string_view spaces = " \t\n\r";
    std::vector<std::string> words;
    for (std::size_t start = 0; (start = text.find_first_not_of(spaces, start)) != text.npos;) {
        const std::size_t end = std::min(text.find_first_of(spaces, start), text.size());
        words.push_back(text.substr(start, end - start));
        start = end;
    }
    return words;
}

}  // namespace

std::vector<HistoryEntry> HistoryFile::entries() const {
    const auto inFile = entriesInFile();
    std::list<HistoryEntry> entries(inFile.begin(), inFile.end());
    entries.insert(entries.end(), others_.begin(), others_.end());
    entries.sort([](const HistoryEntry& one, const HistoryEntry& other) {
        return one.entry.createdAt > other.entry.createdAt;
    });
    return {entries.begin(), entries.end()};
}

std::vector<HistoryEntry> HistoryFile::entriesInFile() const {
    return decodedRecord<std::vector<HistoryEntry>>(readFile(path_));
}

void HistoryFile::createIfMissing() const {
    if (access(path_.c_str(), F_OK) != 0) HelperIO::writeJSON(std::vector<HistoryEntry>(), path_);
}

void HistoryFile::add(std::string_view text) const {
    auto history = entriesInFile();
    history.insert(history.begin(), textEntry(text));
    HelperIO::writeJSON(history, path_);
}

std::vector<HistoryEntry> HistoryFile::matching(std::string_view query) const {
    const auto wanted = words(folded(query));
    auto found = entries();
    std::erase_if(found,
                  [&](const HistoryEntry& entry) { return !containsAll(searchedText(entry), wanted); });
    return found;
}

std::optional<HistoryEntry> HistoryFile::entry(std::string_view id) const {
    const auto wanted = UUID::parse(id);
    for (HistoryEntry& entry : entries())
        if (entry.entry.id == wanted) return std::move(entry);
    return std::nullopt;
}

}  // namespace quorvantis::standin
