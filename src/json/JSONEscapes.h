#pragma once

#include <span>
#include <string_view>

namespace quorvantis {

/// Rewrites the escapes (RFC 8259, section 7) of a JSON text so that it has the same strings, at the same
/// places, and no backslashes. The text must be valid UTF-8: bytes that occur nowhere in it stand for those
/// of an escape. Returns false if an escape is malformed, or half of a surrogate pair.
bool maskEscapes(std::span<char> text);

bool hasMaskedEscape(std::string_view string);

/// Replaces the masked escapes of a string by what they stand for, in place, and returns the string, which
/// is shorter then.
std::string_view unmaskEscapes(std::span<char> string);

}  // namespace quorvantis
