#pragma once

#include <string>
#include <string_view>

namespace quorvantis {

// Paths are strings, normalized only as stated below, because manifests are compared as text.

/// Removes trailing slashes from an absolute path. Resolves a relative path, with its "." and ".." segments,
/// against the current folder. Symbolic links are not resolved.
std::string absolutePath(std::string_view path);

/// The path of `name` in `folder`. Adds a slash unless `folder` ends in one.
std::string joinedPath(std::string_view folder, std::string_view name);

/// The part after the last slash, ignoring trailing slashes; "/" for the root.
std::string lastPathComponent(std::string_view path);

/// The path without its last component: "." for a relative path of one component, "/" for a path in the root.
std::string parentPath(std::string_view path);

}  // namespace quorvantis
