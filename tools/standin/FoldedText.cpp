#include "FoldedText.h"

#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <utf8proc.h>

namespace quorvantis::standin {

std::string foldedText(std::string_view text) {
    utf8proc_uint8_t* folded = nullptr;
    const auto bytes = reinterpret_cast<const utf8proc_uint8_t*>(text.data());
    const auto options =
        static_cast<utf8proc_option_t>(UTF8PROC_STABLE | UTF8PROC_COMPOSE | UTF8PROC_CASEFOLD);
    const auto size = utf8proc_map(bytes, static_cast<utf8proc_ssize_t>(text.size()), &folded, options);
    const std::unique_ptr<utf8proc_uint8_t, decltype(&std::free)> owner(folded, &std::free);
    if (size < 0) return std::string(text);
    return {reinterpret_cast<const char*>(folded), static_cast<std::size_t>(size)};
}

}  // namespace quorvantis::standin
