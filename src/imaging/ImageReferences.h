#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Image references: texts that name an image, "quorvantis://image/" and the 64 hexadecimal digits of its
/// asset hash.
namespace quorvantis::ImageReferences {

inline constexpr std::string_view prefix = "quorvantis://image/";

/// The asset hash of one reference, in lower case; nothing for any other text. A single line end after the
/// digits is let pass, and stays in the result.
std::optional<std::string> assetHash(std::string_view reference);

/// Every reference in a prompt, as it stands there, in order. One that goes on in a further ASCII letter or
/// digit is none, nor is one whose end is part of a character that goes on.
std::vector<std::string> inPrompt(std::string_view prompt);

}  // namespace quorvantis::ImageReferences
