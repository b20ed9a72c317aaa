#pragma once

#include <string>
#include <string_view>
#include <sys/stat.h>
#include <time.h>

namespace quorvantis::platform {

/// When the file's content or attributes were last changed.
timespec changeTime(const struct stat& status);

/// Whether two path texts are equal by the rules of the system's own text comparison. No file is looked at.
bool samePathText(std::string_view one, std::string_view other);

/// The path with its symbolic links resolved; the path as given when it does not resolve.
std::string resolvingSymbolicLinks(const std::string& path);

}  // namespace quorvantis::platform
