#pragma once

#include <string>

namespace quorvantis::standin {

/// Where a file was put.
struct WorkspaceFile {
    std::string path;          // absolute
    std::string relativePath;  // from the workspace's root
};

/// Copies a file into the folder "quorvantis-images" of a workspace, bit for bit. A file that stands there
/// already is never overwritten: when it is the same it serves, else the copy gets `hash` into its name.
/// Symbolic links are not followed, so that nothing is written outside the workspace. Throws
/// std::runtime_error.
WorkspaceFile copiedInto(const std::string& workspaceRoot, const std::string& file, const std::string& hash);

}  // namespace quorvantis::standin
