#pragma once

namespace quorvantis::standin {

/// Turns SIGINT and SIGTERM into something to poll for, from its call on. Answers a descriptor that is ready
/// for reading once one of them has come. Throws std::system_error.
int stopSignalDescriptor();

}  // namespace quorvantis::standin
