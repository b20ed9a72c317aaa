#include "ImageOperations.h"

#include <algorithm>
#include <stdexcept>

#include "Workspace.h"
#include "support/NumberText.h"
#include "support/Paths.h"

namespace quorvantis::standin {

namespace {

std::string text(JSON request, const char* key) {
    const auto value = request[key].string();
    if (!value) throw std::runtime_error(std::string("The request lacks ") + key);
    return std::string(*value);
}

void writeFacts(const Asset& asset, JSONWriter& writer) {
    writer.members("assetID", asset.assetID(), "entryID", asset.entryID.upperCaseText(), "uti", asset.uti,
                   "byteCount", asset.byteCount, "bitExact", true);
    if (asset.identity.pixelHash)
        writer.members("width", *asset.identity.pixelWidth, "height", *asset.identity.pixelHeight,
                       "pixelHash", *asset.identity.pixelHash);
}

void writeCopy(const Asset& asset, const std::string& workspaceRoot, JSONWriter& writer) {
    const WorkspaceFile file = copiedInto(workspaceRoot, asset.path, asset.assetID());
    writer.beginObject();
    writeFacts(asset, writer);
    writer.members("workspacePath", file.path, "relativePath", file.relativePath);
    writer.endObject();
}

std::vector<Match> matches(const ImageLibrary& library, JSON attachments) {
    std::vector<Match> found;
    for (const JSON attachment : attachments.elements())
        if (const auto match = library.match(attachment)) found.push_back(*match);
    return found;
}

double leastConfidence(const std::vector<Match>& found) {
    const auto less = [](const Match& one, const Match& other) { return one.confidence < other.confidence; };
    return found.empty() ? 0 : std::min_element(found.begin(), found.end(), less)->confidence;
}

void resolve(const ImageLibrary& library, JSON request, JSONWriter& reply) {
    const std::string workspaceRoot = text(request, "workspaceRoot");
    const auto found = matches(library, request["attachments"]);
    const bool matched = !found.empty() && found.size() == request["attachments"].elements().count();
    reply.members("matched", matched);
    reply.key("confidence");
    reply.literal(shortestNumberText(leastConfidence(found)));
    reply.key("images");
    reply.beginArray();
    for (const Match& match : found) writeCopy(*match.asset, workspaceRoot, reply);
    reply.endArray();
}

void materialize(const ImageLibrary& library, JSON request, JSONWriter& reply) {
    const Asset* asset = library.find(text(request, "assetID"));
    const std::string workspaceRoot = text(request, "workspaceRoot");
    reply.key("images");
    reply.beginArray();
    if (asset) writeCopy(*asset, workspaceRoot, reply);
    reply.endArray();
}

void metadata(const ImageLibrary& library, JSON request, JSONWriter& reply) {
    const Asset* asset = library.find(text(request, "assetID"));
    reply.key("images");
    reply.beginArray();
    if (asset) {
        reply.beginObject();
        writeFacts(*asset, reply);
        reply.endObject();
    }
    reply.endArray();
}

void currentPromptAssets(const ImageLibrary& library, const CurrentPrompt& prompt, JSONWriter& reply) {
    const auto isInPrompt = [&](const Asset& asset) {
        const auto name = lastPathComponent(asset.path);
        return std::find(prompt.images.begin(), prompt.images.end(), name) != prompt.images.end();
    };
    reply.members("matched", !prompt.images.empty());
    reply.key("images");
    reply.beginArray();
    for (const Asset& asset : library.assets())
        if (isInPrompt(asset)) writeCopy(asset, prompt.workspaceRoot, reply);
    reply.endArray();
}

}  // namespace

void addImageOperations(Operations& operations, const ImageLibrary& library, const CurrentPrompt& prompt) {
    const auto add = [&](const char* name, auto operation) {
        operations[name] = [&library, operation](JSON request, JSONWriter& reply) {
            operation(library, request, reply);
        };
    };
    add("resolve", resolve);
    add("materialize", materialize);
    add("metadata", metadata);
    operations["current_prompt_assets"] = [&library, prompt](JSON, JSONWriter& reply) {
        currentPromptAssets(library, prompt, reply);
    };
}

}  // namespace quorvantis::standin
