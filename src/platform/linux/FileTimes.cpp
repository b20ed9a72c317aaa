#include "platform/FileTimes.h"

namespace quorvantis::platform {

timespec changeTime(const struct stat& status) {
    return status.st_ctim;
}

}  // namespace quorvantis::platform
