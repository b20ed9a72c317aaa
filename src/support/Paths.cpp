#include "support/Paths.h"

#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

namespace quorvantis {

namespace {

std::string_view withoutTrailingSlashes(std::string_view path) {
    while (path.size() > 1 && path.ends_with('/')) path.remove_suffix(1);
    return path;
}

std::string currentFolder() {
    const std::unique_ptr<char, decltype(&std::free)> folder(getcwd(nullptr, 0), &std::free);
    return folder ? folder.get() : "/";
}

/// An absolute path without its "." and ".." segments.
std::string withoutDotSegments(std::string_view path) {
    std::vector<std::string_view> segments;
    while (!path.empty()) {
        path.remove_prefix(1);
        const auto segment = path.substr(0, path.find('/'));
        path.remove_prefix(segment.size());
        if (segment == "..") {
            while (!segments.empty() && segments.back().empty()) segments.pop_back();  // "a//.." is "a/.."
            if (!segments.empty()) segments.pop_back();
        } else if (segment != ".") {
            segments.push_back(segment);
        }
    }
    std::string result;
    for (const auto segment : segments) result.append("/").append(segment);
    return result.empty() ? "/" : result;
}

}  // namespace

std::string absolutePath(std::string_view path) {
    if (path.starts_with('/')) return std::string(withoutTrailingSlashes(path));
    return std::string(withoutTrailingSlashes(withoutDotSegments(joinedPath(currentFolder(), path))));
}

std::string joinedPath(std::string_view folder, std::string_view name) {
    std::string path(folder);
    if (!path.ends_with('/')) path += '/';
    return path.append(name);
}

std::string lastPathComponent(std::string_view path) {
    path = withoutTrailingSlashes(path);
    return std::string(path.size() > 1 ? path.substr(path.rfind('/') + 1) : path);
}

std::string parentPath(std::string_view path) {
    path = withoutTrailingSlashes(path);
    const auto slash = path.rfind('/');
    if (slash == path.npos) return ".";
    return std::string(slash == 0 ? "/" : path.substr(0, slash));
}

}  // namespace quorvantis
