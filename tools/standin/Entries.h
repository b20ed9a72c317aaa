#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "HistoryEntry.h"
#include "imaging/AttachmentIdentity.h"
#include "json/Date.h"
#include "json/UUID.h"

namespace quorvantis::standin {

/// The entry of a text that is copied now: of a link, of files if each line is a URL of one, as in
/// text/uri-list, or of another text. It must be valid UTF-8.
HistoryEntry textEntry(std::string_view text);

/// A picture file that has been decoded.
struct DecodedPicture {
    std::string path;  // any bytes
    std::string name;  // valid UTF-8
    std::string uti;
    std::int64_t byteCount = 0;
    AttachmentIdentity identity;  // with its pixel fields
};

HistoryEntry pictureEntry(const UUID& id, Date createdAt, const DecodedPicture& picture);

}  // namespace quorvantis::standin
