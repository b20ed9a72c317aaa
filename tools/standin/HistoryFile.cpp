#include "HistoryFile.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unistd.h>
#include <utility>
#include <vector>

#include "FoldedText.h"
#include "json/Date.h"
#include "json/JSONFiles.h"
#include "json/JSONRecord.h"
#include "json/UUID.h"
#include "state/HistoryRecords.h"
#include "support/Files.h"
#include "support/HelperIO.h"

namespace quorvantis::standin {

namespace {

constexpr std::size_t previewSize = 80;  // bytes, about

std::string searchedText(const StandinEntry& entry) {
    std::string text = entry.kind + "\n" + entry.preview + "\n" + entry.detail;
    for (const auto& more : {entry.sourceApplication, entry.text}) text += "\n" + more.value_or("");
    for (const std::string& path : entry.filePaths.value_or(std::vector<std::string>())) text += "\n" + path;
    return foldedText(text);
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

/// The beginning of the text on one line, cut between characters.
std::string preview(std::string_view text) {
    std::size_t size = std::min(text.size(), previewSize);
    while (size < text.size() && (text[size] & 0xC0) == 0x80) ++size;
    std::string line(text.substr(0, size));
    std::replace_if(
        line.begin(), line.end(), [](char c) { return c == '\n' || c == '\r' || c == '\t'; }, ' ');
    return size < text.size() ? line + "…" : line;
}

StandinEntry textEntry(std::string_view text) {
    const HelperRepresentation representation = {.id = UUID::random(),
                                                 .uti = "public.utf8-plain-text",
                                                 .byteCount = static_cast<std::int64_t>(text.size()),
                                                 .sha256 = HelperIO::sha256(text),
                                                 .inlineText = std::string(text),
                                                 .isOriginalRepresentation = true};
    const HelperClipboardItem item = {.id = UUID::random(), .index = 0, .representations = {representation}};
    return {.entry = {.id = UUID::random(), .createdAt = Date::now(), .primaryKind = "text", .items = {item}},
            .kind = "text",
            .preview = preview(text),
            .detail = "Text, " + std::to_string(text.size()) + " bytes",
            .text = std::string(text)};
}

}  // namespace

std::vector<StandinEntry> HistoryFile::entries() const {
    auto entries = entriesOfFile();
    entries.insert(entries.end(), others_.begin(), others_.end());
    std::stable_sort(entries.begin(), entries.end(), [](const StandinEntry& one, const StandinEntry& other) {
        return one.entry.createdAt > other.entry.createdAt;
    });
    return entries;
}

std::vector<StandinEntry> HistoryFile::entriesOfFile() const {
    return decodedRecord<std::vector<StandinEntry>>(readFile(path_));
}

void HistoryFile::makeIfMissing() const {
    if (access(path_.c_str(), F_OK) != 0) HelperIO::writeJSON(std::vector<StandinEntry>(), path_);
}

void HistoryFile::add(std::string_view text) const {
    auto history = entriesOfFile();
    history.insert(history.begin(), textEntry(text));
    HelperIO::writeJSON(history, path_);
}

std::vector<StandinEntry> HistoryFile::matching(std::string_view query) const {
    const auto wanted = words(foldedText(query));
    auto found = entries();
    std::erase_if(found,
                  [&](const StandinEntry& entry) { return !containsAll(searchedText(entry), wanted); });
    return found;
}

std::optional<StandinEntry> HistoryFile::entry(std::string_view id) const {
    const auto wanted = UUID::parse(id);
    for (StandinEntry& entry : entries())
        if (entry.entry.id == wanted) return std::move(entry);
    return std::nullopt;
}

}  // namespace quorvantis::standin
