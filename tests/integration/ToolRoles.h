#pragma once

#include <string>
#include <vector>

namespace quorvantis {

/// Plays a tool: does what the first word says, and answers the exit status. "arguments": prints the other
/// words; "both": writes to both streams in turn; "bytes": writes what is no UTF-8; "flood": writes 10 MiB;
/// "signal": writes, and kills itself with the signal of the second word's number; "path": prints PATH;
/// "read": prints what reading a byte of its input answers, 0 at
/// the end; "descriptors": prints how many it has.
int playTool(const std::vector<std::string>& words);

}  // namespace quorvantis
