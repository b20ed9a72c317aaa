#include "ImageEntries.h"

#include "support/Paths.h"

namespace quorvantis::standin {

namespace {

std::optional<HelperImageMetadata> metadata(const Asset& asset) {
    if (!asset.identity.pixelHash) return std::nullopt;
    return HelperImageMetadata{.pixelWidth = *asset.identity.pixelWidth,
                               .pixelHeight = *asset.identity.pixelHeight,
                               .pixelHash = asset.identity.pixelHash,
                               .originalUTI = asset.uti,
                               .isOriginalFile = true,
                               .isBitExact = true};
}

HelperEntry record(const Asset& asset) {
    const HelperRepresentation representation = {.id = asset.entryID,
                                                 .uti = asset.uti,
                                                 .byteCount = asset.byteCount,
                                                 .sha256 = asset.identity.sha256,
                                                 .storagePath = asset.path,
                                                 .isOriginalRepresentation = true,
                                                 .imageMetadata = metadata(asset)};
    const HelperClipboardItem item = {.id = asset.entryID, .index = 0, .representations = {representation}};
    return {.id = asset.entryID, .createdAt = asset.writtenAt, .primaryKind = "image", .items = {item}};
}

std::string detail(const Asset& asset) {
    const std::string size = std::to_string(asset.byteCount) + " bytes";
    if (!asset.identity.pixelHash) return "Image, " + size;
    return "Image, " + std::to_string(*asset.identity.pixelWidth) + " x " +
           std::to_string(*asset.identity.pixelHeight) + ", " + size;
}

}  // namespace

std::vector<StandinEntry> historyEntries(const ImageLibrary& library) {
    std::vector<StandinEntry> entries;
    for (const Asset& asset : library.assets())
        entries.push_back({.entry = record(asset),
                           .kind = "image",
                           .preview = lastPathComponent(asset.path),
                           .detail = detail(asset),
                           .filePaths = std::vector{asset.path}});
    return entries;
}

}  // namespace quorvantis::standin
