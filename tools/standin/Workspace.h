#pragma once

#include <string>

namespace quorvantis::standin {

/// A copy in the workspace.
struct WorkspaceFile {
    std::string path;          // absolute
    std::string relativePath;  // from the workspace's root
};

/// A picture's file, and what to call its copy.
struct Original {
    std::string path;
    std::string name;
    std::string sha256;  // of the file's bytes
};

/// Copies a file into the folder "quorvantis-images" of a workspace.
///
/// An existing file is never overwritten: one with the same bytes is used as the copy, otherwise the copy's
/// name begins with the first 16 digits of the hash. Symbolic links are not followed, so nothing is written
/// outside the workspace. Throws std::runtime_error, also when the file no longer has that hash.
WorkspaceFile copyIntoWorkspace(const std::string& workspaceRoot, const Original& original);

}  // namespace quorvantis::standin
