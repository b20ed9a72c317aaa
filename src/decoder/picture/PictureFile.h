#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace quorvantis::decoder {

/// The picture's file, open on descriptor 3. Read by position only: the descriptor's own offset is shared
/// with the process that passed it. Operations give up when the system fails to read.
class PictureFile {
  public:
    PictureFile();

    /// In bytes, at the start.
    std::uint64_t size() const { return size_; }

    /// Reads from the position on until `bytes` is full or the file ends; answers the count read.
    std::size_t readUpTo(std::uint64_t position, std::span<std::uint8_t> bytes) const;

    /// Reads exactly that much, or gives up.
    void read(std::uint64_t position, std::span<std::uint8_t> bytes) const;

    /// The whole content.
    std::vector<std::uint8_t> content() const;

  private:
    std::uint64_t size_;
};

/// Reads a PictureFile from a position to its end.
class PictureReader {
  public:
    explicit PictureReader(const PictureFile& file, std::uint64_t position = 0)
        : file_(file), position_(position) {}

    /// The next bytes, valid until the next call; none at the end.
    std::span<const std::uint8_t> nextPiece();

    /// Copies the next bytes; fewer than asked for only at the end. Answers their count.
    std::size_t read(std::span<std::uint8_t> bytes);

  private:
    const PictureFile& file_;
    std::uint64_t position_;  // of what the buffer holds no more of
    std::array<std::uint8_t, 65536> buffer_;
    std::span<const std::uint8_t> unread_;  // in the buffer
};

}  // namespace quorvantis::decoder
