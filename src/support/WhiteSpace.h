#pragma once

#include <string_view>

namespace quorvantis {

/// Whether nothing is left of the UTF-8 text when white space and line ends are trimmed: the separators of
/// Unicode (general categories Zs, Zl, Zp), U+0009 to U+000D, U+0085, and, as the platform has it, U+200B.
bool isBlank(std::string_view text);

}  // namespace quorvantis
