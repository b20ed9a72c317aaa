#pragma once

namespace quorvantis::platform {

/// Asks the allocator to keep a few MiB of freed memory. What one call frees the next one needs; giving the
/// pages back in between costs more than all the rest of a large call.
void keepFreedMemory();

}  // namespace quorvantis::platform
