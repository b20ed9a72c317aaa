#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace quorvantis {

inline constexpr std::string_view lowerCaseDigits = "0123456789abcdef";
inline constexpr std::string_view upperCaseDigits = "0123456789ABCDEF";

/// The value of a hexadecimal digit in either case, 0 to 15; empty for any other character.
constexpr std::optional<std::uint8_t> hexadecimalValue(char digit) {
    if (digit >= '0' && digit <= '9') return static_cast<std::uint8_t>(digit - '0');
    if (digit >= 'a' && digit <= 'f') return static_cast<std::uint8_t>(digit - 'a' + 10);
    if (digit >= 'A' && digit <= 'F') return static_cast<std::uint8_t>(digit - 'A' + 10);
    return std::nullopt;
}

/// Whether the text consists of exactly `count` lower-case hexadecimal digits.
bool isLowerCaseHexadecimal(std::string_view text, std::size_t count);

/// Formats each byte as two lower-case digits.
std::string hexadecimal(std::span<const std::uint8_t> bytes);

}  // namespace quorvantis
