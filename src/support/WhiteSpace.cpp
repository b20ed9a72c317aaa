#include "support/WhiteSpace.h"

#include <algorithm>
#include <array>

namespace quorvantis {

namespace {

constexpr std::array<std::string_view, 26> spaces = {
    "\t",     "\n",     "\v",     "\f",     "\r",     " ",      "\u0085", "\u00A0", "\u1680",
    "\u2000", "\u2001", "\u2002", "\u2003", "\u2004", "\u2005", "\u2006", "\u2007", "\u2008",
    "\u2009", "\u200A", "\u200B", "\u2028", "\u2029", "\u202F", "\u205F", "\u3000",
};

}  // namespace

bool isBlank(std::string_view text) {
    while (!text.empty()) {
        const auto space =
            std::find_if(spaces.begin(), spaces.end(), [&](auto s) { return text.starts_with(s); });
        if (space == spaces.end()) return false;
        text.remove_prefix(space->size());
    }
    return true;
}

}  // namespace quorvantis
