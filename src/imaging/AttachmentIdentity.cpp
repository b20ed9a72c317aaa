#include "imaging/AttachmentIdentity.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "imaging/DecodedPixels.h"
#include "imaging/DecodingBatch.h"
#include "platform/Descriptors.h"
#include "platform/SHA256.h"
#include "support/Files.h"
#include "support/Hexadecimal.h"

namespace quorvantis::HelperIO {

namespace {

/// Waits until the clock of the file times has moved on since the file changed, so that a change from now on
/// shows. It stands still for up to 10 ms (a tick of the slowest kernels).
void awaitTickAfter(const ReadableFile::State& state) {
    constexpr std::chrono::milliseconds tick(10);
    const auto changed =
        std::chrono::seconds(state.changed.tv_sec) + std::chrono::nanoseconds(state.changed.tv_nsec);
    const auto age = std::chrono::system_clock::now().time_since_epoch() - changed;
    if (age >= age.zero() && age < tick) std::this_thread::sleep_for(tick - age);
}

/// A file whose bytes are hashed while its picture is being decoded.
class ExaminedFile {
  public:
    explicit ExaminedFile(const std::string& path) : file_(path), state_(file_->state()) {
        awaitTickAfter(state_);
    }

    const platform::Descriptor& descriptor() const { return file_->descriptor(); }

    /// Throws FileError.
    void hash() {
        platform::SHA256 hash;
        const auto size =
            file_->read([&](std::string_view piece) { hash.update(std::as_bytes(std::span(piece))); });
        sha256_ = hexadecimal(hash.finish());
        unchanged_ = size == state_.size;
        finishPart();
    }

    void setPixels(const std::optional<DecodedPixels>& pixels) {
        pixels_ = pixels;
        finishPart();
    }

    /// Call it after `hash` and `setPixels`.
    AttachmentIdentity identity() const {
        if (!pixels_ || !unchanged_) return {.sha256 = sha256_};
        return {sha256_, pixels_->hash, pixels_->width, pixels_->height};
    }

  private:
    /// If the file changed meanwhile, the pixels are dropped: they may not belong to the bytes that were
    /// hashed.
    void finishPart() {
        if (--partsLeft_ > 0) return;
        unchanged_ = unchanged_ && file_->state() == state_;
        file_.reset();
    }

    std::optional<ReadableFile> file_;  // open until both parts are finished
    ReadableFile::State state_;         // when it was opened
    int partsLeft_ = 2;
    std::string sha256_;
    std::optional<DecodedPixels> pixels_;
    bool unchanged_ = false;
};

std::shared_ptr<const ExaminedFile> examine(const std::string& path, DecodingBatch& batch) {
    const auto file = std::make_shared<ExaminedFile>(path);
    batch.start(file->descriptor(), [file](const auto& pixels) { file->setPixels(pixels); });
    file->hash();
    return file;
}

/// The indices of the paths, those of small files first.
std::vector<std::size_t> bySize(std::span<const std::string> paths) {
    std::vector<std::pair<std::uintmax_t, std::size_t>> sizes;
    for (const auto& path : paths) {
        std::error_code ignored;  // examining the file tells
        sizes.emplace_back(std::filesystem::file_size(path, ignored), sizes.size());
    }
    std::sort(sizes.begin(), sizes.end());
    std::vector<std::size_t> order;
    for (const auto& [size, index] : sizes) order.push_back(index);
    return order;
}

}  // namespace

AttachmentIdentity attachmentIdentity(const std::string& path) {
    DecodingBatch batch(decodingTimeout(1));
    const auto file = examine(path, batch);
    batch.finish();
    return file->identity();
}

std::vector<std::optional<AttachmentIdentity>> attachmentIdentities(std::span<const std::string> paths) {
    return attachmentIdentities(paths, decodingTimeout(paths.size()));
}

std::vector<std::optional<AttachmentIdentity>> attachmentIdentities(std::span<const std::string> paths,
                                                                    std::chrono::milliseconds timeout) {
    DecodingBatch batch(timeout);
    std::vector<std::shared_ptr<const ExaminedFile>> files(paths.size());
    for (const std::size_t i : bySize(paths)) {
        try {
            files[i] = examine(paths[i], batch);
        } catch (const FileError&) {
            // The caller decides what an unreadable file means.
        }
    }
    batch.finish();
    std::vector<std::optional<AttachmentIdentity>> identities;
    for (const auto& file : files)
        identities.push_back(file ? std::optional(file->identity()) : std::nullopt);
    return identities;
}

}  // namespace quorvantis::HelperIO
