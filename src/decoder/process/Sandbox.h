#pragma once

#include "decoder/process/Limits.h"

namespace quorvantis::decoder {

/// Takes from this process, for good, what decoding does not need: from here on it may read and write what is
/// open, start threads, use memory and processor time within the limits, and end, after a minute at the
/// latest. Any other system call kills it, but for clone3, which the C library is told does not exist. It
/// ends with its parent. Where the kernel filters no system calls, the limits alone hold. Gives up when the
/// system refuses.
void enterSandbox(const Limits& limits);

}  // namespace quorvantis::decoder
