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

/// An image of the library.
struct Asset {
    std::string path;
    std::string uti;  // uniform type identifier, from the file's first bytes
    UUID entryID;     // of its history entry; made of the file's hash
    Date modifiedAt;
    std::int64_t byteCount = 0;
    AttachmentIdentity identity;

    /// What identifies the image in references and requests: the SHA-256 of the file.
    const std::string& assetID() const { return identity.sha256; }
};

/// An image found for an attachment.
struct Match {
    const Asset* asset;
    double confidence;  // that it is the image meant, from 0 to 1
};

/// The images of a folder, each identified as the server identifies attachments.
class ImageLibrary {
  public:
    ImageLibrary() = default;
    /// Reads the regular files in the folder, but not in its subfolders. Throws FileError.
    explicit ImageLibrary(const std::string& folder);

    const std::vector<Asset>& assets() const { return assets_; }
    /// Returns null when there is none.
    const Asset* find(std::string_view assetID) const;
    /// The image with the attachment's "assetID" or "sha256", with confidence 1; otherwise one with its
    /// "pixelHash", with confidence 0.95.
    std::optional<Match> match(JSON attachment) const;

  private:
    std::vector<Asset> assets_;
};

}  // namespace quorvantis::standin
