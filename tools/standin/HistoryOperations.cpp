#include <cstddef>
#include <functional>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "History.h"
#include "HistoryEntry.h"
#include "Operations.h"
#include "SearchText.h"
#include "broker/BrokerTransport.h"
#include "json/Date.h"
#include "json/JSON.h"
#include "json/JSONRecord.h"
#include "json/JSONWriter.h"
#include "json/UUID.h"

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

void writeEntries(const std::vector<std::string>& summaries, JSONWriter& reply) {
    reply.key("entries");
    reply.beginArray();
    for (const std::string& summary : summaries) reply.literal(summary);
    reply.endArray();
}

/// In bytes, for all summaries of a reply. The rest of it, with the request's identifier, is shorter.
constexpr std::size_t room = BrokerTransport::maximumReplySize - 8192;

std::string summaryOf(const HistoryEntry& entry) {
    JSONWriter writer(Slashes::escaped);
    writeSummary(entry, writer);
    return writer.take();
}

void searchHistory(History& history, JSON request, JSONWriter& reply) {
    const auto query = request["query"].string();
    const auto limit = request["limit"].integer();
    if (!query || !limit || *limit < 1) throw std::runtime_error("search_history needs a query and a limit");
    std::vector<std::string> summaries;
    std::size_t size = 0;
    bool matched = false;
    history.search(SearchQuery(*query), [&](const HistoryEntry& entry) {
        matched = true;
        std::string summary = summaryOf(entry);
        if (summary.size() > room) return true;
        size += summary.size() + 1;
        if (size > room) return false;
        summaries.push_back(std::move(summary));
        return summaries.size() < static_cast<std::size_t>(*limit);
    });
    reply.members("matched", matched);
    writeEntries(summaries, reply);
}

void getHistoryItem(History& history, JSON request, JSONWriter& reply) {
    const auto entryID = request["entryID"].string();
    if (!entryID) throw std::runtime_error("get_history_item needs an entryID");
    const auto id = UUID::parse(*entryID);
    const auto entry = id ? history.entry(*id) : std::nullopt;
    std::vector<std::string> summaries;
    if (entry) summaries.push_back(summaryOf(*entry));
    if (entry && summaries[0].size() > room) throw std::runtime_error("The entry is too large for a reply");
    writeEntries(summaries, reply);
}

}  // namespace

void addHistoryOperations(Operations& operations, History& history,
                          const std::set<std::string, std::less<>>& refusedAgents) {
    const auto isRefused = [refusedAgents](JSON request) {
        return refusedAgents.contains(request["agent"].string().value_or(""));
    };
    const auto add = [&](const char* name, auto operation) {
        operations[name] = [&history, isRefused, operation](JSON request, JSONWriter& reply) {
            if (isRefused(request))
                throw std::runtime_error("The user has not given this agent access to the full history");
            operation(history, request, reply);
        };
    };
    add("search_history", searchHistory);
    add("get_history_item", getHistoryItem);
    operations["status"] = [&history, isRefused](JSON request, JSONWriter& reply) {
        reply.members("running", true, "applicationName", "Quorvantis stand-in",  //
                      "fullHistoryAccess", !isRefused(request),                   //
                      "historyEntryCount", history.entryCount(),                  //
                      "imageCount", history.pictureCount());
    };
}

}  // namespace quorvantis::standin
