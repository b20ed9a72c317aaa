#include "platform/FileSystem.h"

#include <cstdlib>
#include <ctime>
#include <memory>
#include <string>
#include <string_view>

namespace quorvantis::platform {

timespec changeTime(const struct stat& status) {
    return status.st_ctim;
}

bool samePathText(std::string_view one, std::string_view other) {
    return one == other;
}

std::string resolvingSymbolicLinks(const std::string& path) {
    const std::unique_ptr<char, decltype(&std::free)> resolved(realpath(path.c_str(), nullptr), &std::free);
    return resolved ? resolved.get() : path;
}

}  // namespace quorvantis::platform
