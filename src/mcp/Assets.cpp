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

constexpr std::array<PayloadKey, 10> assetKeys = {{
    {"asset_id", "assetID", isString, "\"\""},
    {"entry_id", "entryID", isString, "\"\""},
    {"uti", "uti", isString, "\"public.data\""},
    {"byte_count", "byteCount", isInteger, "0"},
    {"bit_exact", "bitExact", isBoolean, "false"},
    {"width", "width", isInteger},
    {"height", "height", isInteger},
    {"pixel_hash", "pixelHash", isString},
    {"workspace_path", "workspacePath", isString},
    {"relative_path", "relativePath", isString},
}};

JSON firstImage(const JSONDocument& reply) {
    const JSON images = reply["images"];
    if (!images.isArrayOf(JSON::Kind::object) || images.elements().empty())
        throw HelperFailure::unavailable("The requested current-prompt asset is unavailable.");
    return images.elements().front();
}

}  // namespace

JSONText materialize(JSON arguments, const BrokerIdentity& identity) {
    const auto assetID = arguments["asset_id"].string();
    const auto workspaceRoot = arguments["workspace_root"].string();
    if (!assetID || !workspaceRoot)
        throw HelperFailure::invalidArguments("asset_id and workspace_root are required.");
    const JSONDocument reply = BrokerClient{identity}.call(
        "materialize",
        {{"assetID", jsonText(lowerCased(*assetID))}, {"workspaceRoot", jsonText(*workspaceRoot)}});
    const JSON image = firstImage(reply);
    return jsonText(jsonObject("workspace_path", image["workspacePath"].string().value_or(""),  //
                               "relative_path", image["relativePath"].string().value_or(""),    //
                               "bit_exact", image["bitExact"].boolean().value_or(false),        //
                               "conversion", JSON()));
}

JSONText metadata(JSON arguments, const BrokerIdentity& identity) {
    const auto assetID = arguments["asset_id"].string();
    if (!assetID) throw HelperFailure::invalidArguments("A valid current-prompt asset_id is required.");
    const JSONDocument reply =
        BrokerClient{identity}.call("metadata", {{"assetID", jsonText(lowerCased(*assetID))}});
    JSONWriter result(Slashes::bare);
    publicAssetPayload(firstImage(reply), result);
    return {result.take()};
}

JSONText currentPromptAssets(JSON, const BrokerIdentity& identity) {
    if (identity.agent != "cursor")
        throw HelperFailure::unavailable("This enhanced prompt adapter is available only in Cursor.");
    const JSONDocument reply = BrokerClient{identity}.call("current_prompt_assets");
    const bool matched = reply["matched"].boolean().value_or(false);
    return jsonText(jsonObject(
        "matched", matched, "images", publicImages(reply["images"]), "next_step",
        matched
            ? "Read the returned workspace files."
            : "No confirmed image was supplied by the client. Use Copy Original Image Reference in Quorvantis, "
              "then resolve_image_references. Full-history access and repeated restarts are not required."));
}

void publicAssetPayload(JSON asset, JSONWriter& writer) {
    writePublicPayload(asset, assetKeys, writer);
}

JSONText publicImages(JSON images) {
    JSONWriter writer(Slashes::bare);
    writer.beginArray();
    if (images.isArrayOf(JSON::Kind::object))
        for (const JSON image : images.elements()) publicAssetPayload(image, writer);
    writer.endArray();
    return {writer.take()};
}

}  // namespace quorvantis::QuorvantisMCP
