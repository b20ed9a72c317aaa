#pragma once

#include <string>
#include <vector>

namespace quorvantis {

/// Runs the program with its arguments, the program's path left out: proves which agent it serves, then
/// serves it until standard input ends. Answers the exit status: 0, or 1 after one line on standard error.
int startUp(std::vector<std::string> arguments);

}  // namespace quorvantis
