#pragma once

#include <sys/stat.h>
#include <time.h>

namespace quorvantis::platform {

/// When the file's content or attributes were last changed, as the system's clock told.
timespec changeTime(const struct stat& status);

}  // namespace quorvantis::platform
