#include <algorithm>
#include <array>

#include "broker/BrokerClient.h"
#include "broker/BrokerIdentity.h"
#include "json/JSON.h"
#include "json/JSONDocument.h"
#include "json/JSONWriter.h"
#include "mcp/Handlers.h"
#include "mcp/Payload.h"
#include "support/Characters.h"
#include "support/HelperFailure.h"

namespace quorvantis::QuorvantisMCP {

namespace {

constexpr std::array<PayloadKey, 8> historyKeys = {{
    {"entry_id", "entryID", isString, "\"\""},
    {"created_at", "createdAt", isNumber, "0"},
    {"kind", "kind", isString, "\"other\""},
    {"preview", "preview", isString, "\"\""},
    {"detail", "detail", isString, "\"\""},
    {"source_application", "sourceApplication", isString},
    {"text", "text", isString},
    {"file_paths", "filePaths", isArrayOfStrings},
}};

}  // namespace

JSONText searchHistory(JSON arguments, const BrokerIdentity& identity) {
    const auto query = arguments["query"].string();
    if (!query || isBlank(*query)) throw HelperFailure::invalidArguments("A non-empty query is required.");
    const auto limit =
        std::clamp(arguments["limit"].integer().value_or(defaultLimit), minimumLimit, maximumLimit);
    const JSONDocument reply = BrokerClient{identity}.call(
        "search_history", {{"query", jsonText(*query)}, {"limit", jsonText(limit)}});
    JSONWriter result(Slashes::bare);
    result.reserve(reply.size());
    result.beginObject();
    result.members("matched", reply["matched"].boolean().value_or(false));
    result.key("items");
    result.beginArray();
    if (reply["entries"].isArrayOf(JSON::Kind::object))
        for (const JSON entry : reply["entries"].elements()) publicHistoryPayload(entry, result);
    result.endArray();
    result.endObject();
    return {result.take()};
}

JSONText getHistoryItem(JSON arguments, const BrokerIdentity& identity) {
    const auto entryID = arguments["entry_id"].string();
    if (!entryID) throw HelperFailure::invalidArguments("entry_id is required.");
    const JSONDocument reply =
        BrokerClient{identity}.call("get_history_item", {{"entryID", jsonText(*entryID)}});
    const JSON entries = reply["entries"];
    if (!entries.isArrayOf(JSON::Kind::object) || entries.elements().empty())
        throw HelperFailure::unavailable("The requested clipboard item is unavailable.");
    JSONWriter result(Slashes::bare);
    publicHistoryPayload(entries.elements().front(), result);
    return {result.take()};
}

void publicHistoryPayload(JSON entry, JSONWriter& writer) {
    writePublicPayload(entry, historyKeys, writer);
}

}  // namespace quorvantis::QuorvantisMCP
