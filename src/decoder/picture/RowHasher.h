#pragma once

#include <array>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <thread>
#include <vector>

#include "imaging/PixelHasher.h"

namespace quorvantis::decoder {

/// A PixelHasher that hashes in a separate thread while the next rows are being decoded, because hashing
/// takes half as long as decoding a JPEG. Small pictures are hashed in place.
class RowHasher {
  public:
    /// The upright picture's size, within the pixel budget.
    RowHasher(std::int64_t width, std::int64_t height);
    ~RowHasher();

    /// Hashes the next pixels. They are copied.
    void update(std::span<const std::byte> pixels);

    /// See PixelHasher::finish.
    std::optional<std::string> finish();

  private:
    using Block = std::vector<std::byte>;

    Block& filling() { return blocks_[filled_ % blocks_.size()]; }
    void submitBlock();
    void endThread();
    void hashBlocks();

    PixelHasher hasher_;
    std::array<Block, 4> blocks_;  // used in turn
    std::mutex mutex_;             // guards the members below
    std::condition_variable changed_;
    std::size_t filled_ = 0;  // number of blocks
    std::size_t hashed_ = 0;  // likewise
    bool finished_ = false;
    std::thread thread_;  // not started for a small picture
};

}  // namespace quorvantis::decoder
