#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <tuple>
#include <vector>

#include "../json/JSONRecord.h"

namespace quorvantis {

/// Identifies an image file by its bytes and, if it can be decoded, by its pixels. The three optional fields
/// are either all set or all empty.
struct AttachmentIdentity {
    std::string sha256;                       // of the file's bytes, 64 lower-case hexadecimal digits
    std::optional<std::string> pixelHash;     // of the upright picture (see PixelHasher), in the same form
    std::optional<std::int64_t> pixelWidth;   // as the file declares it, before any orientation is applied
    std::optional<std::int64_t> pixelHeight;  // likewise

    static constexpr auto fields() {
        using M = AttachmentIdentity;
        return std::tuple(Field("sha256", &M::sha256), Field("pixelHash", &M::pixelHash),
                          Field("pixelWidth", &M::pixelWidth), Field("pixelHeight", &M::pixelHeight));
    }
};

namespace HelperIO {

/// The default timeout for decoding all pictures of one call: a second for each, but at least 45 s and at
/// most four minutes. Many clients give up on a call after a minute, and those that wait for more after five.
constexpr std::chrono::milliseconds decodingTimeout(std::size_t pictures) {
    return std::chrono::seconds(std::clamp<std::size_t>(pictures, 45, 240));
}

/// Identifies the file at the path. Throws FileError if it cannot be read. After any other failure only the
/// pixel fields are empty.
AttachmentIdentity attachmentIdentity(const std::string& path);

/// Identifies several files, decoding them in one DecodingBatch, small files first. Returns one element per
/// path, in their order; empty for a file that cannot be read. A picture that is not decoded within the
/// timeout has no pixel fields.
std::vector<std::optional<AttachmentIdentity>> attachmentIdentities(std::span<const std::string> paths);
std::vector<std::optional<AttachmentIdentity>> attachmentIdentities(std::span<const std::string> paths,
                                                                    std::chrono::milliseconds timeout);

}  // namespace HelperIO

}  // namespace quorvantis
