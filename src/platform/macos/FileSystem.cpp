#include "platform/FileSystem.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <sys/stat.h>

#include "platform/macos/Owned.h"

namespace quorvantis::platform {

namespace {

Owned<CFMutableStringRef> decomposed(std::string_view text) {
    const auto string = ownedString(text);
    if (!string) return nullptr;
    Owned<CFMutableStringRef> copy(CFStringCreateMutableCopy(kCFAllocatorDefault, 0, string.get()));
    if (copy) CFStringNormalize(copy.get(), kCFStringNormalizationFormD);
    return copy;
}

bool isSameFile(const std::string& one, const std::string& other) {
    struct stat first, second;
    return stat(one.c_str(), &first) == 0 && stat(other.c_str(), &second) == 0 &&
           first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

bool isBelow(std::string_view folder, std::string_view path) {
    return path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/');
}

/// Whether the path is in a folder of the root file system. Foundation never removes "/private" before these.
bool isInTopFolder(std::string_view path) {
    constexpr std::array<std::string_view, 12> folders = {"/Applications", "/Library", "/System", "/Users",
                                                          "/Volumes",      "/bin",     "/cores",  "/dev",
                                                          "/opt",          "/private", "/sbin",   "/usr"};
    return std::any_of(folders.begin(), folders.end(), [&](auto folder) { return isBelow(folder, path); });
}

/// Converts a resolved path to Foundation's form, which keeps the short names of /tmp, /var and /etc, links
/// into /private.
std::string withoutPrivate(const std::string& path) {
    constexpr std::string_view prefix = "/private";
    if (path.size() <= prefix.size() || !isBelow(prefix, path)) return path;
    const std::string shorter = path.substr(prefix.size());
    return !isInTopFolder(shorter) && isSameFile(path, shorter) ? shorter : path;
}

}  // namespace

timespec changeTime(const struct stat& status) {
    return status.st_ctimespec;
}

bool samePathText(std::string_view one, std::string_view other) {
    if (one == other) return true;
    const auto first = decomposed(one);
    const auto second = decomposed(other);
    return first && second && CFEqual(first.get(), second.get());
}

std::string resolvingSymbolicLinks(const std::string& path) {
    const std::unique_ptr<char, decltype(&std::free)> resolved(realpath(path.c_str(), nullptr), &std::free);
    return resolved ? withoutPrivate(resolved.get()) : path;
}

}  // namespace quorvantis::platform
