#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quorvantis {

// A character is an extended grapheme cluster (Unicode Standard Annex 29). All texts must be valid UTF-8.

/// The number of characters in the text.
std::size_t characterCount(std::string_view text);

/// Whether there is a character boundary before the byte at `position`. A code point must begin there, or the
/// text end, and one of the code points on either side must be ASCII, so that these two decide.
bool isCharacterBoundary(std::string_view text, std::size_t position);

/// The text in lower case, independently of language and context.
std::string lowerCased(std::string_view text);

/// Whether the text is empty or all white space: Unicode's separators (general categories Zs, Zl and Zp),
/// U+0009 to U+000D, U+0085 and, as on the platform, U+200B.
bool isBlank(std::string_view text);

}  // namespace quorvantis
