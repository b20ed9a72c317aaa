#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// An image reference names an image: `prefix`, then the image's asset hash, 64 hexadecimal digits in either
/// case. The prefix is matched exactly.
namespace quorvantis::ImageReferences {

inline constexpr std::string_view prefix = "quorvantis://image/";

/// Returns the asset hash of a text that is one whole reference, in lower case; empty for any other text. One
/// line terminator (LF, VT, FF, CR, CR LF, U+0085, U+2028 or U+2029) may follow the digits; it is kept in the
/// result.
std::optional<std::string> assetHash(std::string_view reference);

/// Returns the references in a prompt as written, in order, repetitions included. Anything may precede a
/// reference, and anything but an ASCII letter or digit may follow it: a longer run of digits contains none.
/// A match that begins or ends inside a grapheme cluster is skipped, for example one whose last digit carries
/// a combining mark. The prompt must be valid UTF-8.
std::vector<std::string> inPrompt(std::string_view prompt);

}  // namespace quorvantis::ImageReferences
