#include <algorithm>
#include <cstddef>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "HistoryEntry.h"
#include "HistoryFile.h"
#include "Operations.h"
#include "json/Date.h"
#include "json/JSON.h"
#include "json/JSONRecord.h"
#include "json/JSONWriter.h"

namespace quorvantis::standin {

namespace {

void writeSummary(const HistoryEntry& entry, JSONWriter& writer) {
    writer.beginObject();
    writer.members("entryID", entry.entry.id.upperCaseText());
    writer.key("createdAt");
    Coding<Date>::encode(entry.entry.createdAt, writer);
    writer.members("kind", entry.kind, "preview", entry.preview, "detail", entry.detail);
    if (entry.sourceApplication) writer.members("sourceApplication", *entry.sourceApplication);
    if (entry.text) writer.members("text", *entry.text);
    if (entry.filePaths) {
        writer.key("filePaths");
        Coding<std::vector<std::string>>::encode(*entry.filePaths, writer);
    }
    writer.endObject();
}

void writeEntries(const std::vector<HistoryEntry>& entries, std::size_t limit, JSONWriter& reply) {
    reply.key("entries");
    reply.beginArray();
    for (std::size_t i = 0; i < std::min(entries.size(), limit); ++i) writeSummary(entries[i], reply);
    reply.endArray();
}

void searchHistory(const HistoryFile& history, JSON request, JSONWriter& reply) {
    const auto query = request["query"].string();
    const auto limit = request["limit"].integer();
    if (!query || !limit || *limit < 1) throw std::runtime_error("search_history needs a query and a limit");
    const auto found = history.matching(*query);
    reply.members("matched", !found.empty());
    writeEntries(found, static_cast<std::size_t>(*limit), reply);
}

void getHistoryItem(const HistoryFile& history, JSON request, JSONWriter& reply) {
    const auto entryID = request["entryID"].string();
    if (!entryID) throw std::runtime_error("get_history_item needs an entryID");
    std::vector<HistoryEntry> found;
    if (auto entry = history.entry(*entryID)) found.push_back(std::move(*entry));
    writeEntries(found, 1, reply);
}

}  // namespace

void addHistoryOperations(Operations& operations, const HistoryFile& history, bool isRefused) {
    const auto add = [&](const char* name, auto operation) {
        operations[name] = [&history, isRefused, operation](JSON request, JSONWriter& reply) {
            if (isRefused)
                throw std::runtime_error("The user has not given this agent access to the full history");
            operation(history, request, reply);
        };
    };
    add("search_history", searchHistory);
    add("get_history_item", getHistoryItem);
}

}  // namespace quorvantis::standin
