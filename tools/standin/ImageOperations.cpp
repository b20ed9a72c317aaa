#include <algorithm>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "History.h"
#include "Operations.h"
#include "PictureType.h"
#include "Workspace.h"
#include "json/JSON.h"
#include "json/JSONWriter.h"
#include "json/NumberText.h"

namespace quorvantis::standin {

namespace {

constexpr double sameFileConfidence = 1, samePixelsConfidence = 0.95;

std::string requiredText(JSON request, const char* key) {
    const auto value = request[key].string();
    if (!value) throw std::runtime_error(std::string("The request lacks ") + key);
    return std::string(*value);
}

void writeMetadata(const Asset& asset, JSONWriter& writer) {
    writer.members("assetID", asset.sha256, "entryID", asset.entryID.upperCaseText(), "uti", asset.uti,
                   "byteCount", asset.byteCount, "bitExact", true);
    if (asset.pixelHash)
        writer.members("width", asset.pixelWidth, "height", asset.pixelHeight, "pixelHash", *asset.pixelHash);
}

void writeCopy(const Asset& asset, const std::string& workspaceRoot, JSONWriter& writer) {
    const WorkspaceFile file = copyIntoWorkspace(
        workspaceRoot, {asset.path, pictureName(asset.path, asset.sha256, asset.uti), asset.sha256});
    writer.beginObject();
    writeMetadata(asset, writer);
    writer.members("workspacePath", file.path, "relativePath", file.relativePath);
    writer.endObject();
}

/// A picture found for an attachment.
struct Match {
    Asset asset;
    double confidence;  // that it is the one meant, from 0 to 1
};

/// The picture with the attachment's "assetID" or "sha256"; otherwise one with its "pixelHash".
std::optional<Match> match(History& history, JSON attachment) {
    for (const char* key : {"assetID", "sha256"})
        if (auto asset = history.pictureOfFile(attachment[key].string().value_or("")))
            return Match{std::move(*asset), sameFileConfidence};
    const auto pixelHash = attachment["pixelHash"].string();
    auto asset = pixelHash ? history.pictureOfPixels(*pixelHash) : std::nullopt;
    return asset ? std::optional(Match{std::move(*asset), samePixelsConfidence}) : std::nullopt;
}

std::vector<Match> matches(History& history, JSON attachments) {
    std::vector<Match> found;
    for (const JSON attachment : attachments.elements())
        if (auto match = standin::match(history, attachment)) found.push_back(std::move(*match));
    return found;
}

double minimumConfidence(const std::vector<Match>& found) {
    const auto less = [](const Match& one, const Match& other) { return one.confidence < other.confidence; };
    return found.empty() ? 0 : std::min_element(found.begin(), found.end(), less)->confidence;
}

void resolve(History& history, JSON request, JSONWriter& reply) {
    const std::string workspaceRoot = requiredText(request, "workspaceRoot");
    const auto found = matches(history, request["attachments"]);
    const bool matched = !found.empty() && found.size() == request["attachments"].elements().count();
    reply.members("matched", matched);
    reply.key("confidence");
    reply.literal(shortestNumberText(minimumConfidence(found)));
    reply.key("images");
    reply.beginArray();
    for (const Match& match : found) writeCopy(match.asset, workspaceRoot, reply);
    reply.endArray();
}

void materialize(History& history, JSON request, JSONWriter& reply) {
    const auto asset = history.pictureOfFile(requiredText(request, "assetID"));
    const std::string workspaceRoot = requiredText(request, "workspaceRoot");
    reply.key("images");
    reply.beginArray();
    if (asset) writeCopy(*asset, workspaceRoot, reply);
    reply.endArray();
}

void metadata(History& history, JSON request, JSONWriter& reply) {
    const auto asset = history.pictureOfFile(requiredText(request, "assetID"));
    reply.key("images");
    reply.beginArray();
    if (asset) {
        reply.beginObject();
        writeMetadata(*asset, reply);
        reply.endObject();
    }
    reply.endArray();
}

void currentPromptAssets(History& history, const CurrentPrompt& prompt, JSONWriter& reply) {
    reply.members("matched", !prompt.images.empty());
    reply.key("images");
    reply.beginArray();
    for (const std::string& image : prompt.images)
        if (const auto asset = history.pictureOfFile(image)) writeCopy(*asset, prompt.workspaceRoot, reply);
    reply.endArray();
}

}  // namespace

void addImageOperations(Operations& operations, History& history, const CurrentPrompt& prompt) {
    const auto add = [&](const char* name, auto operation) {
        operations[name] = [&history, operation](JSON request, JSONWriter& reply) {
            operation(history, request, reply);
        };
    };
    add("resolve", resolve);
    add("materialize", materialize);
    add("metadata", metadata);
    operations["current_prompt_assets"] = [&history, prompt](JSON, JSONWriter& reply) {
        currentPromptAssets(history, prompt, reply);
    };
}

}  // namespace quorvantis::standin
