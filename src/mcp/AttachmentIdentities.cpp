#include <optional>
#include <string>
#include <vector>

#include "imaging/AttachmentIdentity.h"
#include "json/JSON.h"
#include "json/JSONRecord.h"
#include "json/JSONWriter.h"
#include "mcp/Handlers.h"
#include "support/Characters.h"
#include "support/Paths.h"

namespace quorvantis::QuorvantisMCP {

namespace {

/// The text in lower case; empty unless it has the length of an identifier. The broker checks the characters.
std::optional<std::string> identifier(JSON value) {
    const auto text = value.string();
    if (!text || characterCount(*text) != identifierLength) return std::nullopt;
    return lowerCased(*text);
}

/// Writes the pixels' hash, width and height if all three are present.
void writePixels(JSON attachment, JSONWriter& writer) {
    const bool hasSnakeCaseHash = attachment["pixel_hash"].string().has_value();
    const auto hash = identifier(attachment[hasSnakeCaseHash ? "pixel_hash" : "pixelHash"]);
    const auto integer = [&](const char* key, const char* otherKey) {
        return attachment[key].integer() ? attachment[key] : attachment[otherKey];
    };
    const JSON width = integer("pixel_width", "pixelWidth");
    const JSON height = integer("pixel_height", "pixelHeight");
    if (hash && width.integer() && height.integer())
        writer.members("pixelHash", *hash, "pixelWidth", width, "pixelHeight", height);
}

/// Writes the identity of an attachment without a file. Returns false if it has neither an asset nor a hash.
bool writeIdentity(JSON attachment, JSONWriter& writer) {
    const auto asset = identifier(attachment["asset_id"]);
    const auto hash = identifier(attachment["sha256"]);
    if (!asset && !hash) return false;
    writer.beginObject();
    if (asset) {
        writer.members("assetID", *asset);
    } else {
        writer.members("sha256", *hash);
        writePixels(attachment, writer);
    }
    writer.endObject();
    return true;
}

std::vector<std::string> filePaths(JSON::Elements attachments) {
    std::vector<std::string> paths;
    for (const JSON attachment : attachments)
        if (const auto path = attachment["file_path"].string()) paths.push_back(absolutePath(*path));
    return paths;
}

}  // namespace

std::optional<JSONText> attachmentIdentities(JSON::Elements attachments) {
    const auto files = HelperIO::attachmentIdentities(filePaths(attachments));
    auto file = files.begin();
    JSONWriter identities(Slashes::bare);
    identities.beginArray();
    for (const JSON attachment : attachments) {
        if (!attachment["file_path"].string()) {
            if (!writeIdentity(attachment, identities)) return std::nullopt;
        } else if (!*file) {
            // The error is dropped on purpose: the agent is told to name the image in another way.
            return std::nullopt;
        } else {
            Coding<AttachmentIdentity>::encode(**file++, identities);
        }
    }
    identities.endArray();
    if (attachments.empty()) return std::nullopt;
    return JSONText{identities.take()};
}

}  // namespace quorvantis::QuorvantisMCP
