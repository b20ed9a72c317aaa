#include "platform/FileTimes.h"

namespace quorvantis::platform {

timespec changeTime(const struct stat& status) {
    return status.st_ctimespec;
}

}  // namespace quorvantis::platform
