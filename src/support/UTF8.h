#pragma once

#include <string>
#include <string_view>

namespace quorvantis {

/// Whether the bytes are well-formed UTF-8 (Unicode, table 3-7), without surrogates and overlong forms.
bool isValidUTF8(std::string_view bytes);

/// Replaces each maximal ill-formed part by U+FFFD, as Unicode recommends (chapter 3, "U+FFFD Substitution of
/// Maximal Subparts").
std::string repairedUTF8(std::string_view bytes);

}  // namespace quorvantis
