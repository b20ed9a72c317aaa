#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <tuple>
#include <vector>

#include "json/JSONRecord.h"

namespace quorvantis {

/// What identifies an image file: its bytes, and where it could be decoded its pixels. The three optional
/// fields are there together or not at all.
struct AttachmentIdentity {
    std::string sha256;                       // of the file's bytes, 64 lower-case hexadecimal digits
    std::optional<std::string> pixelHash;     // of the upright picture (PixelHasher), in the same form
    std::optional<std::int64_t> pixelWidth;   // as the file declares it, before any orientation
    std::optional<std::int64_t> pixelHeight;  // the same

    static constexpr auto fields() {
        using M = AttachmentIdentity;
        return std::tuple(Field("sha256", &M::sha256), Field("pixelHash", &M::pixelHash),
                          Field("pixelWidth", &M::pixelWidth), Field("pixelHeight", &M::pixelHeight));
    }
};

namespace HelperIO {

/// How long the decoding of one call's pictures may take in all.
inline constexpr std::chrono::milliseconds decodingPatience = std::chrono::seconds(60);

/// Identifies the file at the path. Throws FileError when it cannot be read; whatever else fails costs the
/// pixel fields only.
AttachmentIdentity attachmentIdentity(const std::string& path);

/// Identifies several files, decoding them side by side. The answers stand in the order of the paths; a file
/// that cannot be read has none. A picture that is not decoded within `patience` has no pixel fields.
std::vector<std::optional<AttachmentIdentity>> attachmentIdentities(
    std::span<const std::string> paths, std::chrono::milliseconds patience = decodingPatience);

}  // namespace HelperIO

}  // namespace quorvantis
