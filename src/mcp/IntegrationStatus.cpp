#include "mcp/IntegrationStatus.h"

#include <string>
#include <unordered_set>

#include "broker/BrokerClient.h"
#include "mcp/Replies.h"

namespace quorvantis::QuorvantisMCP {

namespace {

bool isUpper(char c) {
    return c >= 'A' && c <= 'Z';
}

char lower(char c) {
    return isUpper(c) ? static_cast<char>(c - 'A' + 'a') : c;
}

/// clientID -> client_id, URLPath -> url_path: a word begins at a capital that follows a small letter or
/// digit, and at the last capital of a run that goes on in small letters.
std::string snakeCase(std::string_view key) {
    std::string name;
    for (std::size_t i = 0; i < key.size(); ++i) {
        const bool afterSmall = i > 0 && !isUpper(key[i - 1]) && key[i - 1] != '_';
        const bool beforeSmall = i > 0 && i + 1 < key.size() && key[i + 1] >= 'a' && key[i + 1] <= 'z';
        if (isUpper(key[i]) && (afterSmall || beforeSmall) && !name.ends_with('_')) name += '_';
        name += lower(key[i]);
    }
    return name;
}

/// Writes the members, the first where two names become the same, and none with a name in `taken`.
void writeRenamed(JSON::Members members, std::unordered_set<std::string> taken, JSONWriter& writer);

void writeRenamed(JSON value, JSONWriter& writer) {
    switch (value.kind()) {
        case JSON::Kind::array:
            writer.beginArray();
            for (const JSON element : value.elements()) writeRenamed(element, writer);
            return writer.endArray();
        case JSON::Kind::object:
            writer.beginObject();
            writeRenamed(value.members(), {}, writer);
            return writer.endObject();
        default:
            return writer.value(value);
    }
}

void writeRenamed(JSON::Members members, std::unordered_set<std::string> taken, JSONWriter& writer) {
    for (const auto [key, value] : members) {
        const auto [name, isNew] = taken.insert(snakeCase(key));
        if (!isNew) continue;
        writer.key(*name);
        writeRenamed(value, writer);
    }
}

}  // namespace

JSONText getIntegrationStatus(JSON, const BrokerIdentity& identity) {
    const JSONDocument answer = BrokerClient{identity}.call("status");
    JSONWriter status(Slashes::bare, containersAroundResult);
    status.beginObject();
    status.members("connected", true, "agent", identity.agent);
    writeRenamed(
        answer.root().members(),
        {"connected", "agent", "version", "request_id", "ok", "operation", "client_id", "credential"},
        status);
    status.endObject();
    return {status.take()};
}

}  // namespace quorvantis::QuorvantisMCP
