#pragma once

#include <string_view>

namespace quorvantis::standin {

/// Prints a line with the time of day in front.
void log(std::string_view line);

/// Catches SIGINT and SIGTERM from now on. Returns a descriptor that becomes ready for reading when one of
/// them arrives. Throws std::system_error.
int stopSignalDescriptor();

}  // namespace quorvantis::standin
