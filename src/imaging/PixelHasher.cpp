#include "imaging/PixelHasher.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "support/Hexadecimal.h"

namespace quorvantis {

bool isWithinPixelBudget(std::int64_t width, std::int64_t height) {
    return width > 0 && height > 0 && width <= pixelBudget / height;
}

PixelHasher::PixelHasher(std::int64_t width, std::int64_t height)
    : missing_(static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(height) * 4) {
    const std::string header = std::to_string(width) + "x" + std::to_string(height) + ":rgba8-srgb:";
    hash_.update(std::as_bytes(std::span(header)));
}

void PixelHasher::update(std::span<const std::byte> pixels) {
    hash_.update(pixels);
    missing_ -= pixels.size();
}

std::optional<std::string> PixelHasher::finish() {
    if (missing_ != 0) return std::nullopt;
    return hexadecimal(hash_.finish());
}

}  // namespace quorvantis
