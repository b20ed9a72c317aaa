#include "facts/Bytes.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utf8proc.h>

namespace quorvantis::standin {

static void append(std::string& text, std::uint32_t codePoint) {
    std::array<utf8proc_uint8_t, 4> bytes;
    const auto size = utf8proc_encode_char(static_cast<utf8proc_int32_t>(codePoint), bytes.data());
    text.append(bytes.begin(), bytes.begin() + size);
}

std::string Bytes::characters(std::size_t unitSize) const {
    std::string text;
    for (std::size_t at = 0; at < size() && number(at, unitSize) != 0; at += unitSize)
        append(text, number(at, unitSize));
    return text;
}

}  // namespace quorvantis::standin
