#include "support/HexText.h"

#include <string_view>

namespace quorvantis {

std::string hexText(const platform::SHA256::Digest& digest) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (const auto byte : digest) {
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
    return text;
}

}  // namespace quorvantis
