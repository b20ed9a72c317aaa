#include "platform/Memory.h"

namespace quorvantis::platform {

void keepFreedMemory() {}  // the system's allocator does so by itself

}  // namespace quorvantis::platform
