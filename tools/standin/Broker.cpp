#include "Broker.h"

#include <algorithm>
#include <stdexcept>

#include "Log.h"

namespace quorvantis::standin {

namespace {

void writeSummary(const StandinEntry& entry, JSONWriter& writer) {
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

void writeEntries(const std::vector<StandinEntry>& entries, std::size_t most, JSONWriter& reply) {
    reply.key("entries");
    reply.beginArray();
    for (std::size_t i = 0; i < std::min(entries.size(), most); ++i) writeSummary(entries[i], reply);
    reply.endArray();
}

std::string line(JSONWriter& reply) {
    return reply.take() + "\n";
}

std::string refusal(std::string_view requestID, std::string_view message) {
    JSONWriter reply(Slashes::escaped);
    reply.object("version", 1, "requestID", requestID, "ok", false, "error", message);
    return line(reply);
}

}  // namespace

struct Broker::OperationRow {
    std::string_view name;
    Operation operation;
};

const Broker::OperationRow Broker::operations[] = {
    {"status", &Broker::status},
    {"search_history", &Broker::searchHistory},
    {"get_history_item", &Broker::getHistoryItem},
};

std::string Broker::answer(std::string_view text) const {
    const auto document = JSONDocument::parse(text);
    const JSON request = document ? document->root() : JSON();
    const auto requestID = request["requestID"].string().value_or("");
    try {
        JSONWriter reply(Slashes::escaped);
        reply.beginObject();
        reply.members("version", 1, "requestID", requestID, "ok", true);
        run(request, reply);
        reply.endObject();
        return line(reply);
    } catch (const std::exception& failure) {
        log("refused: " + std::string(failure.what()));
        return refusal(requestID, failure.what());
    }
}

void Broker::run(JSON request, JSONWriter& reply) const {
    checkCaller(request);
    const auto name = request["operation"].string().value_or("");
    log(std::string(*request["agent"].string()) + ": " + std::string(name));
    for (const OperationRow& row : operations)
        if (row.name == name) return (this->*row.operation)(request, reply);
    throw std::runtime_error("Unknown operation");
}

void Broker::checkCaller(JSON request) const {
    if (request["version"].integer() != 1) throw std::runtime_error("Unsupported protocol version");
    const auto isCaller = [&](const Installation& agent) {
        return request["agent"].string() == agent.identity.agent &&
               request["clientID"].string() == agent.identity.clientID &&
               request["credential"].string() == agent.identity.credential;
    };
    if (std::none_of(agents_.begin(), agents_.end(), isCaller))
        throw std::runtime_error("Quorvantis does not know this client or its credential");
}

void Broker::checkHistoryAccess() const {
    if (refusesHistory_)
        throw std::runtime_error("The user has not given this agent access to the full history");
}

void Broker::status(JSON, JSONWriter& reply) const {
    reply.members("running", true, "applicationName", "Quorvantis stand-in",  //
                  "fullHistoryAccess", !refusesHistory_, "historyEntryCount", history_.entries().size());
}

void Broker::searchHistory(JSON request, JSONWriter& reply) const {
    checkHistoryAccess();
    const auto query = request["query"].string();
    const auto limit = request["limit"].integer();
    if (!query || !limit || *limit < 1) throw std::runtime_error("search_history needs a query and a limit");
    const auto found = history_.matching(*query);
    reply.members("matched", !found.empty());
    writeEntries(found, static_cast<std::size_t>(*limit), reply);
}

void Broker::getHistoryItem(JSON request, JSONWriter& reply) const {
    checkHistoryAccess();
    const auto entryID = request["entryID"].string();
    if (!entryID) throw std::runtime_error("get_history_item needs an entryID");
    std::vector<StandinEntry> found;
    if (auto entry = history_.entry(*entryID)) found.push_back(std::move(*entry));
    writeEntries(found, 1, reply);
}

}  // namespace quorvantis::standin
