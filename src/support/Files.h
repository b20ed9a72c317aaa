#pragma once

#include <functional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

namespace quorvantis {

/// A file operation that the system refused. `what()` is one sentence for the user.
class FileError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;

    /// A file that could not be opened or read; `code` is the system's error number.
    static FileError reading(std::string_view path, int code);
    /// Any other refusal.
    static FileError system(int code);
};

/// Reads a regular file from its start to its end, piece by piece.
void readFile(const std::string& path, const std::function<void(std::string_view piece)>& take);

/// The whole content of a regular file.
std::string readFile(const std::string& path);

/// Puts `content` in the file's place in one step: who reads it sees the old file or the whole new one. A
/// symbolic link at the path is replaced, not followed. The new file is readable and writable by its owner
/// only.
void replaceFile(const std::string& path, std::string_view content);

/// Makes the folder and those above it, as far as they are missing.
void makeFolders(const std::string& path);

}  // namespace quorvantis
