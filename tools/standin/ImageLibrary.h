#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "imaging/AttachmentIdentity.h"
#include "json/Date.h"
#include "json/JSON.h"
#include "json/UUID.h"

namespace quorvantis::standin {

/// An image that the stand-in knows.
struct Asset {
    std::string path;  // of the original
    std::string uti;   // uniform type identifier, told from its first bytes
    UUID entryID;      // of its history entry, the same at each start
    Date writtenAt;
    std::int64_t byteCount = 0;
    AttachmentIdentity identity;

    /// The identifier by which references and agents name the image: the hash of the file.
    const std::string& assetID() const { return identity.sha256; }
};

/// An image found, and how sure it is that it is the one meant: from 0 to 1.
struct Match {
    const Asset* asset;
    double confidence;
};

/// The images of a folder, each identified as the server identifies attachments.
class ImageLibrary {
  public:
    ImageLibrary() = default;
    /// Reads the files of the folder, not of those below it. Throws FileError.
    explicit ImageLibrary(const std::string& folder);

    const std::vector<Asset>& assets() const { return assets_; }
    const Asset* find(std::string_view assetID) const;
    /// The image that an attachment describes: by asset identifier or file hash for certain, by its decoded
    /// pixels nearly so.
    std::optional<Match> match(JSON attachment) const;

  private:
    std::vector<Asset> assets_;
};

}  // namespace quorvantis::standin
