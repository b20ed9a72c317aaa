#include "platform/Memory.h"

#include <malloc.h>

namespace quorvantis::platform {

void keepFreedMemory() {
    constexpr int mebibyte = 1024 * 1024;
    mallopt(M_TRIM_THRESHOLD, 16 * mebibyte);  // a call with the longest reply needs half of it
    mallopt(M_MMAP_THRESHOLD, 4 * mebibyte);   // and no single block beyond this
}

}  // namespace quorvantis::platform
