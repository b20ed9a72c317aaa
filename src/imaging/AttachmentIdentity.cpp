#include "imaging/AttachmentIdentity.h"

#include <memory>

#include "imaging/DecodedPixelHash.h"
#include "platform/SHA256.h"
#include "support/Files.h"
#include "support/HexText.h"

namespace quorvantis::HelperIO {

namespace {

/// A file whose picture is being decoded.
class ExaminedFile {
  public:
    explicit ExaminedFile(const std::string& path) : file_(path), state_(file_.state()) {
        platform::SHA256 hash;
        hashed_ = file_.read([&](std::string_view piece) { hash.update(std::as_bytes(std::span(piece))); });
        sha256_ = hexText(hash.finish());
    }

    const platform::Descriptor& descriptor() const { return file_.descriptor(); }

    /// The file's identity once its decoding has ended. A file that was written to in the meantime gets no
    /// pixel fields: they could be another picture's than the hash of its bytes.
    AttachmentIdentity identity(const std::optional<DecodedPixels>& pixels) const {
        if (!pixels || hashed_ != state_.size || file_.state() != state_) return {.sha256 = sha256_};
        return {sha256_, pixels->hash, pixels->width, pixels->height};
    }

  private:
    ReadableFile file_;
    ReadableFile::State state_;
    off_t hashed_ = 0;  // bytes
    std::string sha256_;
};

void identify(const std::string& path, DecodedPixelHash& decoding,
              std::optional<AttachmentIdentity>& identity) {
    const auto file = std::make_shared<const ExaminedFile>(path);
    decoding.start(file->descriptor(), [file, &identity](const std::optional<DecodedPixels>& pixels) {
        identity = file->identity(pixels);
    });
}

}  // namespace

AttachmentIdentity attachmentIdentity(const std::string& path) {
    std::optional<AttachmentIdentity> identity;
    DecodedPixelHash decoding(decodingPatience);
    identify(path, decoding, identity);
    decoding.finish();
    return *identity;
}

std::vector<std::optional<AttachmentIdentity>> attachmentIdentities(std::span<const std::string> paths,
                                                                    std::chrono::milliseconds patience) {
    std::vector<std::optional<AttachmentIdentity>> identities(paths.size());
    DecodedPixelHash decoding(patience);
    for (std::size_t i = 0; i < paths.size(); ++i) {
        try {
            identify(paths[i], decoding, identities[i]);
        } catch (const FileError&) {
            // Has no identity; who asked decides what that means.
        }
    }
    decoding.finish();
    return identities;
}

}  // namespace quorvantis::HelperIO
