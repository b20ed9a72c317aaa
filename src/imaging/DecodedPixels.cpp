#include "imaging/DecodedPixels.h"

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

#include "imaging/PixelHasher.h"
#include "support/Hexadecimal.h"

namespace quorvantis {

namespace {

std::optional<std::int64_t> consumeNumber(std::string_view& text) {
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const auto length = static_cast<std::size_t>(end - text.data());
    if (error != std::errc() || !text.substr(length).starts_with(' ')) return std::nullopt;
    text.remove_prefix(length + 1);
    return number;
}

}  // namespace

std::string DecodedPixels::record() const {
    return std::to_string(width) + ' ' + std::to_string(height) + ' ' + hash + '\n';
}

std::optional<DecodedPixels> DecodedPixels::parse(std::string_view record) {
    std::string_view rest = record;
    const auto width = consumeNumber(rest);
    const auto height = consumeNumber(rest);
    if (!width || !height || !isWithinPixelBudget(*width, *height) || rest.empty()) return std::nullopt;
    DecodedPixels pixels = {*width, *height, std::string(rest.substr(0, rest.size() - 1))};
    // Writing it again finds leading zeros and a missing line feed.
    if (!isLowerCaseHexadecimal(pixels.hash, 64) || pixels.record() != record) return std::nullopt;
    return pixels;
}

}  // namespace quorvantis
