#include <algorithm>
#include <array>
#include <cstddef>
#include <set>
#include <string>
#include <string_view>

#include "broker/BrokerClient.h"
#include "broker/BrokerIdentity.h"
#include "json/JSON.h"
#include "json/JSONDocument.h"
#include "json/JSONWriter.h"
#include "mcp/Handlers.h"
#include "mcp/Replies.h"

namespace quorvantis::QuorvantisMCP {

namespace {

bool isUpper(char c) {
    return c >= 'A' && c <= 'Z';
}

char lower(char c) {
    return isUpper(c) ? static_cast<char>(c - 'A' + 'a') : c;
}

/// clientID -> client_id, URLPath -> url_path: a word begins at an upper-case letter that follows a
/// lower-case letter or a digit, and at one that follows another upper-case letter but precedes a lower-case
/// one.
std::string snakeCase(std::string_view key) {
    std::string name;
    for (std::size_t i = 0; i < key.size(); ++i) {
        const bool afterLower = i > 0 && !isUpper(key[i - 1]) && key[i - 1] != '_';
        const bool beforeLower = i > 0 && i + 1 < key.size() && key[i + 1] >= 'a' && key[i + 1] <= 'z';
        if (isUpper(key[i]) && (afterLower || beforeLower) && !name.ends_with('_')) name += '_';
        name += lower(key[i]);
    }
    return name;
}

bool isEnvelopeKey(std::string_view key) {
    constexpr std::array<std::string_view, 7> keys = {"version", "requestID", "ok",        "operation",
                                                      "agent",   "clientID",  "credential"};
    return std::find(keys.begin(), keys.end(), key) != keys.end();
}

void writeRenamed(JSON value, JSONWriter& writer);

/// Writes the member unless its new name is taken: if two keys become the same, the first one wins.
void writeRenamed(const JSON::Member& member, std::set<std::string>& taken, JSONWriter& writer) {
    const auto [name, isNew] = taken.insert(snakeCase(member.key));
    if (!isNew) return;
    writer.key(*name);
    writeRenamed(member.value, writer);
}

void writeRenamed(JSON value, JSONWriter& writer) {
    std::set<std::string> taken;
    switch (value.kind()) {
        case JSON::Kind::array:
            writer.beginArray();
            for (const JSON element : value.elements()) writeRenamed(element, writer);
            return writer.endArray();
        case JSON::Kind::object:
            writer.beginObject();
            for (const JSON::Member member : value.members()) writeRenamed(member, taken, writer);
            return writer.endObject();
        default: return writer.value(value);
    }
}

}  // namespace

JSONText getIntegrationStatus(JSON, const BrokerIdentity& identity) {
    const JSONDocument reply = BrokerClient{identity}.call("status");
    JSONWriter status(Slashes::bare, containersAroundResult);
    status.beginObject();
    status.members("connected", true, "agent", identity.agent);
    std::set<std::string> taken = {"connected", "agent"};
    for (const JSON::Member member : reply.root().members())
        if (!isEnvelopeKey(member.key)) writeRenamed(member, taken, status);
    status.endObject();
    return {status.take()};
}

}  // namespace quorvantis::QuorvantisMCP
