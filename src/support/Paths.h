#pragma once

#include <string>
#include <string_view>

namespace quorvantis {

// Paths are texts here and stay as their owner wrote them: manifests are compared with their text.

/// The absolute form of a path: an absolute one as given, without trailing slashes; a relative one after the
/// current folder, with its "." and ".." segments removed. Symbolic links are left alone.
std::string absolutePath(std::string_view path);

/// The path of `name` in `folder`, with one slash between.
std::string joinedPath(std::string_view folder, std::string_view name);

/// What stands after the last slash, trailing slashes aside; "/" for the root.
std::string lastPathComponent(std::string_view path);

/// What stands before the last component: "." for a single relative component, "/" below the root.
std::string parentPath(std::string_view path);

}  // namespace quorvantis
