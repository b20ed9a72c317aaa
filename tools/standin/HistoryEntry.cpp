#include "HistoryEntry.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ImageLibrary.h"
#include "json/Date.h"
#include "json/UUID.h"
#include "state/HistoryRecords.h"
#include "support/HelperIO.h"
#include "support/Paths.h"

namespace quorvantis::standin {

namespace {

constexpr std::size_t previewSize = 80;  // bytes, and the rest of the last character

std::string preview(std::string_view text) {
    std::size_t size = std::min(text.size(), previewSize);
    while (size < text.size() && (text[size] & 0xC0) == 0x80) ++size;
    std::string line(text.substr(0, size));
    std::replace_if(
        line.begin(), line.end(), [](char c) { return c == '\n' || c == '\r' || c == '\t'; }, ' ');
    return size < text.size() ? line + "…" : line;
}

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
    return {.id = asset.entryID, .createdAt = asset.modifiedAt, .primaryKind = "image", .items = {item}};
}

std::string detail(const Asset& asset) {
    const auto& [sha256, pixelHash, width, height] = asset.identity;
    const auto size = width ? ", " + std::to_string(*width) + " x " + std::to_string(*height) : std::string();
    return "Image" + size + ", " + std::to_string(asset.byteCount) + " bytes";
}

HistoryEntry imageEntry(const Asset& asset) {
    return {.entry = record(asset),
            .kind = "image",
            .preview = lastPathComponent(asset.path),
            .detail = detail(asset),
            .filePaths = std::vector{asset.path}};
}

}  // namespace

HistoryEntry textEntry(std::string_view text) {
    const HelperRepresentation representation = {.id = UUID::random(),
                                                 .uti = "public.utf8-plain-text",
                                                 .byteCount = static_cast<std::int64_t>(text.size()),
                                                 .sha256 = HelperIO::sha256(text),
                                                 .inlineText = std::string(text),
                                                 .isOriginalRepresentation = true};
    const HelperClipboardItem item = {.id = UUID::random(), .index = 0, .representations = {representation}};
    return {.entry = {.id = UUID::random(), .createdAt = Date::now(), .primaryKind = "text", .items = {item}},
            .kind = "text",
            .preview = preview(text),
            .detail = "Text, " + std::to_string(text.size()) + " bytes",
            .text = std::string(text)};
}

std::vector<HistoryEntry> imageEntries(const ImageLibrary& library) {
    std::vector<HistoryEntry> entries;
    for (const Asset& asset : library.assets()) entries.push_back(imageEntry(asset));
    return entries;
}

}  // namespace quorvantis::standin
