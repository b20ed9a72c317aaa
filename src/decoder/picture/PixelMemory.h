#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace quorvantis::decoder {

/// Memory for a whole picture, in huge pages where the system has them: to fault in small ones takes longer
/// than to turn the picture.
class PixelMemory {
  public:
    /// No memory.
    PixelMemory() = default;
    /// Gives up when there is not enough.
    explicit PixelMemory(std::size_t pixels);
    PixelMemory(PixelMemory&& other) noexcept;
    PixelMemory& operator=(PixelMemory&& other) noexcept;
    ~PixelMemory();

    std::span<std::uint32_t> pixels() const { return pixels_; }

  private:
    std::span<std::uint32_t> pixels_;
};

}  // namespace quorvantis::decoder
