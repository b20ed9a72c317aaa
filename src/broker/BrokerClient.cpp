#include "broker/BrokerClient.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "broker/BrokerIdentity.h"
#include "broker/BrokerTransport.h"
#include "json/CodingErrors.h"
#include "json/JSONDocument.h"
#include "json/JSONWriter.h"
#include "json/UUID.h"
#include "support/HelperFailure.h"

namespace quorvantis {

namespace {

using Fields = std::vector<BrokerField>;

bool hasField(const Fields& fields, std::string_view key) {
    return std::any_of(fields.begin(), fields.end(),
                       [&](const BrokerField& field) { return field.key == key; });
}

template <class Value>
void writeUnlessField(JSONWriter& writer, std::string_view key, const Value& value, const Fields& fields) {
    if (!hasField(fields, key)) writer.members(key, value);
}

std::string requestLine(const BrokerIdentity& identity, std::string_view requestID,
                        std::string_view operation, const Fields& fields) {
    JSONWriter writer(Slashes::escaped);
    writer.beginObject();
    writeUnlessField(writer, "version", 1, fields);
    writeUnlessField(writer, "requestID", requestID, fields);
    writeUnlessField(writer, "operation", operation, fields);
    writeUnlessField(writer, "agent", identity.agent, fields);
    writeUnlessField(writer, "clientID", identity.clientID, fields);
    writeUnlessField(writer, "credential", identity.credential, fields);
    for (const BrokerField& field : fields) writer.members(field.key, field.value);
    writer.endObject();
    return writer.take() + "\n";
}

/// Like the platform's reader, accepts only an object or an array at the top level.
JSONDocument parsedReply(std::string text) {
    auto reply = JSONDocument::parseOwned(std::move(text));
    if (!reply || !(reply->root().kind() == JSON::Kind::object || reply->root().kind() == JSON::Kind::array))
        throw DecodingError::mistyped(CodingPath());
    return std::move(*reply);
}

}  // namespace

JSONDocument BrokerClient::call(std::string_view operation, const Fields& fields) const {
    const std::string requestID = UUID::random().lowerCaseText();
    const std::string request = requestLine(identity, requestID, operation, fields);
    JSONDocument reply = parsedReply(BrokerTransport::exchange(socketURL, request));
    // Checked before `ok`: a refusal of another request does not refuse this one.
    if (reply["version"].integer() != 1 || reply["requestID"].string() != requestID)
        throw HelperFailure::unavailable("Quorvantis returned an invalid broker response.");
    if (reply["ok"].boolean() != true)
        throw HelperFailure::unavailable(reply["error"].string().value_or("Quorvantis denied the request."));
    return reply;
}

bool BrokerClient::isLocalReachable(const std::string& socketURL) {
    return BrokerTransport::isReachable(socketURL);
}

}  // namespace quorvantis
