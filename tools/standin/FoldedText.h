#pragma once

#include <string>
#include <string_view>

namespace quorvantis::standin {

/// The UTF-8 text in a form in which texts that differ by case alone, or by how accents are composed, are
/// equal.
std::string foldedText(std::string_view text);

}  // namespace quorvantis::standin
