#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quorvantis {

// Characters as a reader counts them: extended grapheme clusters (Unicode Standard Annex 29). All texts are
// valid UTF-8.

std::size_t characterCount(std::string_view text);

/// Whether the text may be cut between characters right before the byte at `place`, where a code point begins
/// or the text ends, and one of the two code points there is ASCII: no more of the text then has a say in it.
bool isCharacterBoundary(std::string_view text, std::size_t place);

/// The text in lower case, without regard to language or context.
std::string lowerCased(std::string_view text);

/// Whether nothing is left of the text when white space and line ends are trimmed: the separators of Unicode
/// (general categories Zs, Zl and Zp), U+0009 to U+000D, U+0085, and, as on the platform, U+200B.
bool isBlank(std::string_view text);

}  // namespace quorvantis
