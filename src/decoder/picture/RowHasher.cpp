#include "decoder/picture/RowHasher.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <system_error>

namespace quorvantis::decoder {

namespace {

constexpr std::size_t blockSize = 131'072;        // bytes
constexpr std::int64_t maximumInPlace = 131'072;  // pixels; for fewer, starting a thread takes longer

}  // namespace

RowHasher::RowHasher(std::int64_t width, std::int64_t height) : hasher_(width, height) {
    if (width * height <= maximumInPlace) return;
    try {
        thread_ = std::thread([this] { hashBlocks(); });
    } catch (const std::system_error&) {
        // Without a thread, `update` hashes in place.
    }
}

RowHasher::~RowHasher() {
    if (thread_.joinable()) endThread();
}

void RowHasher::update(std::span<const std::byte> pixels) {
    if (!thread_.joinable()) return hasher_.update(pixels);
    while (!pixels.empty()) {
        const auto taken = pixels.first(std::min(pixels.size(), blockSize - filling().size()));
        filling().insert(filling().end(), taken.begin(), taken.end());
        pixels = pixels.subspan(taken.size());
        if (filling().size() == blockSize) submitBlock();
    }
}

std::optional<std::string> RowHasher::finish() {
    if (thread_.joinable()) {
        submitBlock();
        endThread();
    }
    return hasher_.finish();
}

void RowHasher::endThread() {
    {
        const std::lock_guard lock(mutex_);
        finished_ = true;
    }
    changed_.notify_all();
    thread_.join();
}

/// Passes the current block to the thread, and waits until the next block is free.
void RowHasher::submitBlock() {
    {
        const std::lock_guard lock(mutex_);
        ++filled_;
    }
    changed_.notify_all();
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return filled_ - hashed_ < blocks_.size(); });
    filling().clear();
}

void RowHasher::hashBlocks() {
    std::unique_lock lock(mutex_);
    for (;;) {
        changed_.wait(lock, [this] { return hashed_ < filled_ || finished_; });
        if (hashed_ == filled_) return;
        lock.unlock();
        hasher_.update(blocks_[hashed_ % blocks_.size()]);
        lock.lock();
        ++hashed_;
        changed_.notify_all();
    }
}

}  // namespace quorvantis::decoder
