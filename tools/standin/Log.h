#pragma once

#include <string_view>

namespace quorvantis::standin {

/// Prints a line with the time of day in front.
void log(std::string_view line);

}  // namespace quorvantis::standin
