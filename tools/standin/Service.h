#pragma once

#include "Options.h"

namespace quorvantis::standin {

/// Serves what the options name until a signal stops it. All checks come first, then the socket, then the
/// manifests and credentials: a start that fails has changed nothing that another program uses. Throws
/// std::runtime_error with one line for the user.
void serve(const Options& options);

}  // namespace quorvantis::standin
