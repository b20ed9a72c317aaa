#include "decoder/picture/PixelMemory.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <sys/mman.h>
#include <utility>

#include "decoder/picture/GiveUp.h"

namespace quorvantis::decoder {

PixelMemory::PixelMemory(std::size_t pixels) {
    const std::size_t size = pixels * sizeof(std::uint32_t);
    void* start = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (start == MAP_FAILED) giveUp();
    madvise(start, size, MADV_HUGEPAGE);
    pixels_ = {static_cast<std::uint32_t*>(start), pixels};
}

PixelMemory::PixelMemory(PixelMemory&& other) noexcept : pixels_(std::exchange(other.pixels_, {})) {}

PixelMemory& PixelMemory::operator=(PixelMemory&& other) noexcept {
    std::swap(pixels_, other.pixels_);
    return *this;
}

PixelMemory::~PixelMemory() {
    if (!pixels_.empty()) munmap(pixels_.data(), pixels_.size_bytes());
}

}  // namespace quorvantis::decoder
