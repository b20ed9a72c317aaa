#include "support/Hexadecimal.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace quorvantis {

bool isLowerCaseHexadecimal(std::string_view text, std::size_t count) {
    return text.size() == count && text.find_first_not_of(lowerCaseDigits) == text.npos;
}

std::string hexadecimal(std::span<const std::uint8_t> bytes) {
    std::string text;
    for (const auto byte : bytes) {
        text += lowerCaseDigits[byte >> 4];
        text += lowerCaseDigits[byte & 15];
    }
    return text;
}

}  // namespace quorvantis
