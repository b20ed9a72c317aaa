#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "../json/Date.h"
#include "../json/JSONRecord.h"
#include "../json/UUID.h"

namespace quorvantis {

// The clipboard history as the desktop application stores and exchanges it.

/// Facts about an image representation.
struct HelperImageMetadata {
    std::int64_t pixelWidth = 0;
    std::int64_t pixelHeight = 0;
    std::optional<std::string> pixelHash;  // of the decoded pixels, 64 hexadecimal digits
    std::optional<std::int64_t> bitsPerComponent;
    std::optional<bool> hasAlpha;
    std::optional<std::string> colorModel;    // the image decoder's name for it
    std::optional<std::string> profileName;   // of the embedded colour profile
    std::optional<std::int64_t> orientation;  // the EXIF orientation, 1 to 8
    std::optional<std::int64_t> frameCount;
    std::string originalUTI;  // uniform type identifier of the image as captured
    bool isOriginalFile = false;
    bool isBitExact = false;
    std::optional<std::string> conversion;  // a short description of what was done to the image

    static constexpr auto fields() {
        using M = HelperImageMetadata;
        return std::tuple(Field("pixelWidth", &M::pixelWidth), Field("pixelHeight", &M::pixelHeight),
                          Field("pixelHash", &M::pixelHash), Field("bitsPerComponent", &M::bitsPerComponent),
                          Field("hasAlpha", &M::hasAlpha), Field("colorModel", &M::colorModel),
                          Field("profileName", &M::profileName), Field("orientation", &M::orientation),
                          Field("frameCount", &M::frameCount), Field("originalUTI", &M::originalUTI),
                          Field("isOriginalFile", &M::isOriginalFile), Field("isBitExact", &M::isBitExact),
                          Field("conversion", &M::conversion));
    }
};

/// The bytes of a pasteboard item in one of its types.
struct HelperRepresentation {
    UUID id;
    std::string uti;  // uniform type identifier of the data
    std::int64_t byteCount = 0;
    std::optional<std::string> sha256;
    std::optional<std::string> storagePath;  // where the desktop application keeps the bytes
    std::optional<std::string> inlineText;
    bool isOriginalRepresentation = false;  // the bytes are the source application's own
    std::optional<HelperImageMetadata> imageMetadata;
    std::optional<std::string> thumbnailPath;

    static constexpr auto fields() {
        using M = HelperRepresentation;
        return std::tuple(Field("id", &M::id), Field("uti", &M::uti), Field("byteCount", &M::byteCount),
                          Field("sha256", &M::sha256), Field("storagePath", &M::storagePath),
                          Field("inlineText", &M::inlineText),
                          Field("isOriginalRepresentation", &M::isOriginalRepresentation),
                          Field("imageMetadata", &M::imageMetadata),
                          Field("thumbnailPath", &M::thumbnailPath));
    }
};

/// One pasteboard item.
struct HelperClipboardItem {
    UUID id;
    std::int64_t index = 0;  // position on the pasteboard
    std::vector<HelperRepresentation> representations;

    static constexpr auto fields() {
        using M = HelperClipboardItem;
        return std::tuple(Field("id", &M::id), Field("index", &M::index),
                          Field("representations", &M::representations));
    }
};

/// An entry of the history: what the user copied at one time.
struct HelperEntry {
    UUID id;
    Date createdAt;
    std::string primaryKind;  // one word, chosen by the producer
    std::vector<HelperClipboardItem> items;

    static constexpr auto fields() {
        using M = HelperEntry;
        return std::tuple(Field("id", &M::id), Field("createdAt", &M::createdAt),
                          Field("primaryKind", &M::primaryKind), Field("items", &M::items));
    }
};

}  // namespace quorvantis
