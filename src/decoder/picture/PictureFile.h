#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace quorvantis::decoder {

/// The picture's file, open on descriptor 3. It is read only at explicit positions, because the descriptor's
/// offset is shared with the process that passed it. Operations give up on read errors.
class PictureFile {
  public:
    PictureFile();

    /// The size in bytes when this was constructed.
    std::uint64_t size() const { return size_; }

    /// Reads from the position until `bytes` is full or the file ends. Returns the number of bytes read.
    std::size_t readUpTo(std::uint64_t position, std::span<std::uint8_t> bytes) const;

    /// Fills `bytes`, or gives up if the file ends before.
    void read(std::uint64_t position, std::span<std::uint8_t> bytes) const;

  private:
    std::uint64_t size_;
};

/// The whole content of a PictureFile, mapped into memory: if the file shrinks, reading it kills the process.
class PictureContent {
  public:
    explicit PictureContent(const PictureFile& file);
    PictureContent(const PictureContent&) = delete;
    PictureContent& operator=(const PictureContent&) = delete;
    ~PictureContent();

    std::span<const std::uint8_t> bytes() const { return bytes_; }

  private:
    std::span<std::uint8_t> bytes_;
};

/// Reads a PictureFile sequentially from a position to its end.
class PictureReader {
  public:
    explicit PictureReader(const PictureFile& file, std::uint64_t position = 0)
        : file_(file), position_(position) {}

    /// Returns the next bytes, valid until the next call; empty at the end of the file.
    std::span<const std::uint8_t> nextPiece();

    /// Reads until `bytes` is full or the file ends. Returns the number of bytes read.
    std::size_t read(std::span<std::uint8_t> bytes);

  private:
    const PictureFile& file_;
    std::uint64_t position_;  // of the first byte after the buffer's content
    std::array<std::uint8_t, 65536> buffer_;
    std::span<const std::uint8_t> unread_;  // in the buffer
};

}  // namespace quorvantis::decoder
