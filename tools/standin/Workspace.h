#pragma once

#include <string>

namespace quorvantis::standin {

/// A copy in the workspace.
struct WorkspaceFile {
    std::string path;          // absolute
    std::string relativePath;  // from the workspace's root
};

/// Copies a file into the folder "quorvantis-images" of a workspace. `hash` is the SHA-256 of its bytes.
///
/// An existing file is never overwritten: one with the same bytes is used as the copy, otherwise the copy's
/// name begins with the first 16 digits of the hash. Symbolic links are not followed, so nothing is written
/// outside the workspace. Throws std::runtime_error, also when the file no longer has that hash.
WorkspaceFile copyIntoWorkspace(const std::string& workspaceRoot, const std::string& file,
                                const std::string& hash);

}  // namespace quorvantis::standin
