#include "ImageEntries.h"

#include <optional>
#include <string>
#include <vector>

#include "HistoryFile.h"
#include "ImageLibrary.h"
#include "state/HistoryRecords.h"
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

std::string detail(const HelperRepresentation& representation) {
    std::string text = "Image";
    if (const auto& image = representation.imageMetadata)
        text += ", " + std::to_string(image->pixelWidth) + " x " + std::to_string(image->pixelHeight);
    return text + ", " + std::to_string(representation.byteCount) + " bytes";
}

StandinEntry historyEntry(const Asset& asset) {
    const HelperEntry entry = record(asset);
    return {.entry = entry,
            .kind = "image",
            .preview = lastPathComponent(asset.path),
            .detail = detail(entry.items[0].representations[0]),
            .filePaths = std::vector{asset.path}};
}

}  // namespace

std::vector<StandinEntry> historyEntries(const ImageLibrary& library) {
    std::vector<StandinEntry> entries;
    for (const Asset& asset : library.assets()) entries.push_back(historyEntry(asset));
    return entries;
}

}  // namespace quorvantis::standin
