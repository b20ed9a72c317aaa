#pragma once

#include <string>
#include <string_view>
#include <sys/stat.h>
#include <time.h>

namespace quorvantis::platform {

/// The time of the last change of the file's content or attributes (st_ctime).
timespec changeTime(const struct stat& status);

/// Whether two paths are equal as strings: byte by byte on Linux, by canonical equivalence (Unicode Standard
/// Annex 15) on macOS. Does not access the file system.
bool samePathText(std::string_view one, std::string_view other);

/// The path with its symbolic links resolved, in Foundation's form on macOS; unchanged if it cannot be
/// resolved.
std::string resolvingSymbolicLinks(const std::string& path);

}  // namespace quorvantis::platform
