#include "decoder/picture/Orientation.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace quorvantis::decoder {

namespace {

constexpr std::uint16_t orientationTag = 0x0112;
constexpr std::uint16_t shortType = 3;
constexpr std::size_t entrySize = 12;
// The number of pixels in a cache line: rotated rows are columns of the stored picture.
constexpr std::size_t rowsAtOnce = 16;

/// Reads numbers in the byte order of a TIFF block; bytes past its end are 0.
class Block {
  public:
    explicit Block(std::span<const std::uint8_t> bytes) : bytes_(bytes), bigEndian_(byte(0) == 'M') {}

    std::uint32_t byte(std::size_t at) const { return at < bytes_.size() ? bytes_[at] : 0U; }
    std::uint32_t number16(std::size_t at) const {
        return bigEndian_ ? byte(at) << 8 | byte(at + 1) : byte(at + 1) << 8 | byte(at);
    }
    std::uint32_t number32(std::size_t at) const {
        return bigEndian_ ? number16(at) << 16 | number16(at + 2) : number16(at + 2) << 16 | number16(at);
    }

  private:
    std::span<const std::uint8_t> bytes_;
    bool bigEndian_;
};

std::span<const std::uint8_t> withoutMarker(std::span<const std::uint8_t> exif) {
    const std::string_view text(reinterpret_cast<const char*>(exif.data()), exif.size());
    return text.starts_with(exifMark) ? exif.subspan(exifMark.size()) : exif;
}

/// Addresses the stored pixels in upright order: the index of upright (0, 0), and the steps to the next x and
/// y.
struct Traversal {
    std::ptrdiff_t origin, nextX, nextY;
};

Traversal traversal(Orientation orientation, std::ptrdiff_t w, std::ptrdiff_t h) {
    const std::ptrdiff_t right = w - 1;
    const std::ptrdiff_t bottom = (h - 1) * w;
    switch (orientation) {
        case 2: return {right, -1, w};
        case 3: return {bottom + right, -1, -w};
        case 4: return {bottom, 1, -w};
        case 5: return {0, w, 1};
        case 6: return {bottom, -w, 1};
        case 7: return {bottom + right, -w, -1};
        case 8: return {right, w, -1};
        default: return {0, 1, w};
    }
}

}  // namespace

std::optional<Orientation> validOrientation(std::uint32_t value) {
    return value >= 1 && value <= 8 ? std::optional(static_cast<Orientation>(value)) : std::nullopt;
}

std::optional<Orientation> exifOrientation(std::span<const std::uint8_t> exif) {
    const Block block(withoutMarker(exif));
    const auto order = block.byte(0);
    if ((order != 'I' && order != 'M') || block.byte(1) != order || block.number16(2) != 42)
        return std::nullopt;
    const std::size_t directory = block.number32(4);
    const std::size_t count = block.number16(directory);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t entry = directory + 2 + i * entrySize;
        if (block.number16(entry) == orientationTag && block.number16(entry + 2) == shortType)
            return validOrientation(block.number16(entry + 8));
    }
    return std::nullopt;
}

void forEachUprightRows(Orientation orientation, std::span<const std::uint32_t> pixels, std::size_t width,
                        std::size_t height, const std::function<void(std::span<const std::uint32_t>)>& take) {
    const auto step =
        traversal(orientation, static_cast<std::ptrdiff_t>(width), static_cast<std::ptrdiff_t>(height));
    const std::size_t columns = swapsSides(orientation) ? height : width;
    const std::size_t rows = swapsSides(orientation) ? width : height;
    const std::size_t most = swapsSides(orientation) ? rowsAtOnce : 1;
    std::vector<std::uint32_t> turned(columns * std::min(rows, most));
    for (std::size_t y = 0; y < rows; y += most) {
        const auto count = static_cast<std::ptrdiff_t>(std::min(most, rows - y));
        const auto* stored = pixels.data() + step.origin + static_cast<std::ptrdiff_t>(y) * step.nextY;
        for (std::size_t x = 0; x < columns; ++x, stored += step.nextX)
            for (std::ptrdiff_t row = 0; row < count; ++row)
                turned.data()[static_cast<std::size_t>(row) * columns + x] = stored[row * step.nextY];
        take(std::span(turned).first(static_cast<std::size_t>(count) * columns));
    }
}

}  // namespace quorvantis::decoder
