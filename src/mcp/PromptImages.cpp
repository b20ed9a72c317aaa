#include "mcp/PromptImages.h"

#include "broker/BrokerClient.h"
#include "cli/HelperFailure.h"
#include "imaging/ImageReferences.h"
#include "mcp/Assets.h"
#include "mcp/AttachmentIdentities.h"

namespace quorvantis::QuorvantisMCP {

namespace {

constexpr std::size_t mostReferences = 50;

JSONText resolveAttachments(JSON attachments, JSON arguments, const BrokerIdentity& identity) {
    const auto identities = attachmentIdentities(attachments.elements());
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
    const JSONDocument answer = BrokerClient{identity}.call("resolve", fields);
    const JSONText confidence = {std::string(answer["confidence"].numberText().value_or("0"))};
    return jsonText(jsonObject("matched", answer["matched"].boolean().value_or(false),  //
                               "confidence", confidence, "images", publicImages(answer["images"])));
}

/// The references as attachments; nothing when one of them is no reference.
std::optional<JSONText> attachmentsOf(JSON::Elements references) {
    JSONWriter attachments(Slashes::bare);
    attachments.beginArray();
    for (const JSON reference : references) {
        const auto hash = ImageReferences::assetHash(*reference.string());
        if (!hash) return std::nullopt;
        attachments.object("asset_id", *hash);
    }
    attachments.endArray();
    return JSONText{attachments.take()};
}

}  // namespace

JSONText resolve(JSON arguments, const BrokerIdentity& identity) {
    return resolveAttachments(arguments["attachments"], arguments, identity);
}

JSONText resolveReferences(JSON arguments, const BrokerIdentity& identity) {
    const JSON references = arguments["references"];
    const auto count = references.elements().count();
    if (!references.isArrayOf(JSON::Kind::string) || count < 1 || count > mostReferences)
        throw HelperFailure::invalidArguments(
            "Provide the quorvantis://image/ references explicitly shared in the current user prompt.");
    const auto attachments = attachmentsOf(references.elements());
    if (!attachments)
        throw HelperFailure::invalidArguments("One or more Quorvantis image references are invalid.");
    const auto document = JSONDocument::parse(attachments->text);
    return resolveAttachments(document->root(), arguments, identity);
}

}  // namespace quorvantis::QuorvantisMCP
