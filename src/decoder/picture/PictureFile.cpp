#include "decoder/picture/PictureFile.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <errno.h>
#include <span>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "decoder/picture/GiveUp.h"

namespace quorvantis::decoder {

namespace {

constexpr int descriptor = 3;

}  // namespace

PictureFile::PictureFile() {
    struct stat status;
    if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) giveUp();
    size_ = static_cast<std::uint64_t>(status.st_size);
}

std::size_t PictureFile::readUpTo(std::uint64_t position, std::span<std::uint8_t> bytes) const {
    std::size_t done = 0;
    while (done < bytes.size()) {
        const auto rest = bytes.subspan(done);
        const ssize_t count =
            pread(descriptor, rest.data(), rest.size(), static_cast<off_t>(position + done));
        if (count < 0 && errno != EINTR) giveUp();
        if (count == 0) break;
        if (count > 0) done += static_cast<std::size_t>(count);
    }
    return done;
}

void PictureFile::read(std::uint64_t position, std::span<std::uint8_t> bytes) const {
    if (readUpTo(position, bytes) != bytes.size()) giveUp();
}

PictureContent::PictureContent(const PictureFile& file) {
    void* start = mmap(nullptr, file.size(), PROT_READ, MAP_PRIVATE, descriptor, 0);
    if (start == MAP_FAILED) giveUp();
    bytes_ = {static_cast<std::uint8_t*>(start), file.size()};
}

PictureContent::~PictureContent() {
    munmap(bytes_.data(), bytes_.size());
}

std::span<const std::uint8_t> PictureReader::nextPiece() {
    if (unread_.empty()) {
        const auto count = file_.readUpTo(position_, buffer_);
        unread_ = std::span(buffer_).first(count);
        position_ += count;
    }
    return std::exchange(unread_, {});
}

std::size_t PictureReader::read(std::span<std::uint8_t> bytes) {
    std::size_t done = 0;
    while (done < bytes.size()) {
        const auto piece = nextPiece();
        if (piece.empty()) break;
        const auto taken = piece.first(std::min(piece.size(), bytes.size() - done));
        std::copy(taken.begin(), taken.end(), bytes.begin() + static_cast<std::ptrdiff_t>(done));
        done += taken.size();
        unread_ = piece.subspan(taken.size());
    }
    return done;
}

}  // namespace quorvantis::decoder
