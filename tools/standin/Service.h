#pragma once

#include "Options.h"

namespace quorvantis::standin {

/// Serves what the options name, until it is stopped. All checks come first, then the socket, then what
/// clients are configured with, so that whoever fails has changed nothing that another uses. Throws
/// std::runtime_error with one line for the user.
void serve(const Options& options);

}  // namespace quorvantis::standin
