#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "broker/BrokerClient.h"
#include "broker/BrokerIdentity.h"
#include "imaging/ImageReferences.h"
#include "json/JSON.h"
#include "json/JSONDocument.h"
#include "json/JSONWriter.h"
#include "mcp/Handlers.h"
#include "mcp/Payload.h"
#include "support/Characters.h"
#include "support/HelperFailure.h"

namespace quorvantis::QuorvantisMCP {

namespace {

/// Throws if `identities` is empty: some attachment has no valid identity.
JSONText resolveIdentities(const std::optional<JSONText>& identities, JSON arguments,
                           const BrokerIdentity& identity) {
    if (!identities)
        throw HelperFailure::invalidArguments(
            "Every attachment needs an explicit valid image identity. For resized chat previews, use the original "
            "image reference copied from Quorvantis.");
    const auto workspaceRoot = arguments["workspace_root"].string();
    if (!workspaceRoot)
        throw HelperFailure::invalidArguments("workspace_root is required for materialization.");
    std::vector<BrokerField> fields = {{"attachments", *identities},
                                       {"workspaceRoot", jsonText(*workspaceRoot)}};
    if (const auto session = arguments["session_id"].string())
        fields.push_back({"sessionID", jsonText(*session)});
    if (const auto turn = arguments["turn_id"].string()) fields.push_back({"turnID", jsonText(*turn)});
    const JSONDocument reply = BrokerClient{identity}.call("resolve", fields);
    const JSON number = reply["confidence"];
    const JSONText confidence = {std::string(isNumber(number) ? *number.numberText() : "0")};
    return jsonText(jsonObject("matched", reply["matched"].boolean().value_or(false),  //
                               "confidence", confidence, "images", publicImages(reply["images"])));
}

/// The asset hashes of the references. Throws if one of the strings is not a reference.
std::vector<std::string> assetHashes(JSON::Elements references) {
    std::vector<std::string> hashes;
    for (const JSON reference : references) {
        auto hash = ImageReferences::assetHash(*reference.string());
        if (!hash)
            throw HelperFailure::invalidArguments("One or more Quorvantis image references are invalid.");
        hashes.push_back(std::move(*hash));
    }
    return hashes;
}

/// Empty if a hash ends in a line terminator, which is allowed after a reference but not in an identifier.
std::optional<JSONText> assetIdentities(const std::vector<std::string>& hashes) {
    JSONWriter identities(Slashes::bare);
    identities.beginArray();
    for (const auto& hash : hashes) {
        if (characterCount(hash) != identifierLength) return std::nullopt;
        identities.object("assetID", hash);
    }
    identities.endArray();
    return JSONText{identities.take()};
}

}  // namespace

JSONText resolve(JSON arguments, const BrokerIdentity& identity) {
    return resolveIdentities(attachmentIdentities(arguments["attachments"].elements()), arguments, identity);
}

JSONText resolveReferences(JSON arguments, const BrokerIdentity& identity) {
    const JSON references = arguments["references"];
    const auto count = references.elements().count();
    if (!references.isArrayOf(JSON::Kind::string) || count < 1 || count > maximumReferences)
        throw HelperFailure::invalidArguments(
            "Provide the quorvantis://image/ references explicitly shared in the current user prompt.");
    return resolveIdentities(assetIdentities(assetHashes(references.elements())), arguments, identity);
}

}  // namespace quorvantis::QuorvantisMCP
