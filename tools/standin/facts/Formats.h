#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "facts/PictureFacts.h"

namespace quorvantis::standin {

// The facts of one format each. The file has the format's first bytes, and may be damaged in every other way.

PictureFacts pngFacts(std::span<const std::uint8_t> file);   // PNG, third edition, 5.3 and 11
PictureFacts jpegFacts(std::span<const std::uint8_t> file);  // ITU-T T.81, annex B; ICC.1:2022, annex B.4
PictureFacts gifFacts(std::span<const std::uint8_t> file);   // GIF89a, 18 to 23
PictureFacts tiffFacts(std::span<const std::uint8_t> file);  // TIFF 6.0; nothing of those of 64-bit offsets
PictureFacts webpFacts(std::span<const std::uint8_t> file);  // RFC 9649, 2.5 to 2.7 and 3.4

/// The description in an ICC profile, in English when it has several. ICC.1:2022, 9.2.41 and 10.15; of
/// version 2, ICC.1:2001-04, 6.5.17. None when there is none, or no well-formed text; only the start of a
/// very long one.
std::optional<std::string> profileDescription(std::span<const std::uint8_t> profile);

}  // namespace quorvantis::standin
