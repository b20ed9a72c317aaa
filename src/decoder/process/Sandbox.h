#pragma once

namespace quorvantis::decoder {

/// Takes from this process, for good, what decoding does not need: from here on it may read and write what is
/// open, start threads, use 3 GiB of memory and 60 s, of processor time and by the clock, and end. Any other
/// system call kills it, but for clone3, which the C library is told does not exist. It ends with its parent.
/// Where the kernel filters no system calls, the limits alone hold. Gives up when the system refuses.
void enterSandbox();

}  // namespace quorvantis::decoder
