#pragma once

#include <vector>

#include "Finding.h"

namespace quorvantis::doctor {

/// Prints a line for each result, and below it what to do. With colours on a terminal, unless NO_COLOR is
/// set.
void printText(const std::vector<Result>& results);

/// Prints {"ok", "checks": [{"agent"?, "check", "result", "text", "advice"?}]}.
void printJSON(const std::vector<Result>& results);

/// Whether no check failed.
bool isHealthy(const std::vector<Result>& results);

}  // namespace quorvantis::doctor
