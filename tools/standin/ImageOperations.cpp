#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

#include "ImageLibrary.h"
#include "Operations.h"
#include "Workspace.h"
#include "json/JSON.h"
#include "json/JSONWriter.h"
#include "json/NumberText.h"
#include "support/Paths.h"

namespace quorvantis::standin {

namespace {

std::string requiredText(JSON request, const char* key) {
    const auto value = request[key].string();
    if (!value) throw std::runtime_error(std::string("The request lacks ") + key);
    return std::string(*value);
}

void writeMetadata(const Asset& asset, JSONWriter& writer) {
    writer.members("assetID", asset.assetID(), "entryID", asset.entryID.upperCaseText(), "uti", asset.uti,
                   "byteCount", asset.byteCount, "bitExact", true);
    if (asset.identity.pixelHash)
        writer.members("width", *asset.identity.pixelWidth, "height", *asset.identity.pixelHeight,
                       "pixelHash", *asset.identity.pixelHash);
}

void writeCopy(const Asset& asset, const std::string& workspaceRoot, JSONWriter& writer) {
    const WorkspaceFile file = copyIntoWorkspace(workspaceRoot, asset.path, asset.assetID());
    writer.beginObject();
    writeMetadata(asset, writer);
    writer.members("workspacePath", file.path, "relativePath", file.relativePath);
    writer.endObject();
}

std::vector<Match> matches(const ImageLibrary& library, JSON attachments) {
    std::vector<Match> found;
    for (const JSON attachment : attachments.elements())
        if (const auto match = library.match(attachment)) found.push_back(*match);
    return found;
}

double minimumConfidence(const std::vector<Match>& found) {
    const auto less = [](const Match& one, const Match& other) { return one.confidence < other.confidence; };
    return found.empty() ? 0 : std::min_element(found.begin(), found.end(), less)->confidence;
}

void resolve(const ImageLibrary& library, JSON request, JSONWriter& reply) {
    const std::string workspaceRoot = requiredText(request, "workspaceRoot");
    const auto found = matches(library, request["attachments"]);
    const bool matched = !found.empty() && found.size() == request["attachments"].elements().count();
    reply.members("matched", matched);
    reply.key("confidence");
    reply.literal(shortestNumberText(minimumConfidence(found)));
    reply.key("images");
    reply.beginArray();
    for (const Match& match : found) writeCopy(*match.asset, workspaceRoot, reply);
    reply.endArray();
}

void materialize(const ImageLibrary& library, JSON request, JSONWriter& reply) {
    const Asset* asset = library.find(requiredText(request, "assetID"));
    const std::string workspaceRoot = requiredText(request, "workspaceRoot");
    reply.key("images");
    reply.beginArray();
    if (asset) writeCopy(*asset, workspaceRoot, reply);
    reply.endArray();
}

void metadata(const ImageLibrary& library, JSON request, JSONWriter& reply) {
    const Asset* asset = library.find(requiredText(request, "assetID"));
    reply.key("images");
    reply.beginArray();
    if (asset) {
        reply.beginObject();
        writeMetadata(*asset, reply);
        reply.endObject();
    }
    reply.endArray();
}

void currentPromptAssets(const CurrentPrompt& prompt, JSONWriter& reply) {
    reply.members("matched", !prompt.images.empty());
    reply.key("images");
    reply.beginArray();
    for (const Asset* asset : prompt.images) writeCopy(*asset, prompt.workspaceRoot, reply);
    reply.endArray();
}

const Asset* imageNamed(const std::string& name, const ImageLibrary& library) {
    const auto& assets = library.assets();
    const auto found = std::find_if(assets.begin(), assets.end(), [&](const Asset& asset) {
        return lastPathComponent(asset.path) == name;
    });
    if (found == assets.end())
        throw std::runtime_error("There is no image \"" + name + "\" in the folder of images.");
    return &*found;
}

}  // namespace

CurrentPrompt promptWith(const std::vector<std::string>& names, const ImageLibrary& library,
                         const std::string& workspaceRoot) {
    CurrentPrompt prompt = {.images = {}, .workspaceRoot = workspaceRoot};
    for (const std::string& name : names) prompt.images.push_back(imageNamed(name, library));
    return prompt;
}

void addImageOperations(Operations& operations, const ImageLibrary& library, const CurrentPrompt& prompt) {
    const auto add = [&](const char* name, auto operation) {
        operations[name] = [&library, operation](JSON request, JSONWriter& reply) {
            operation(library, request, reply);
        };
    };
    add("resolve", resolve);
    add("materialize", materialize);
    add("metadata", metadata);
    operations["current_prompt_assets"] = [prompt](JSON, JSONWriter& reply) {
        currentPromptAssets(prompt, reply);
    };
}

}  // namespace quorvantis::standin
