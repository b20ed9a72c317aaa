#pragma once

#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <time.h>

#include "platform/Descriptors.h"

namespace quorvantis {

/// A file operation that the system refused. `what()` is one sentence for the user.
class FileError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;

    /// A file that could not be opened or read; `code` is the system's error number.
    static FileError reading(std::string_view path, int code);
    /// An executable that could not be started.
    static FileError starting(std::string_view path, int code);
    /// Any other refusal.
    static FileError system(int code);
};

/// A regular file, open for reading.
class ReadableFile {
  public:
    /// What changes when somebody writes to the file.
    struct State {
        off_t size;  // bytes
        timespec changed;

        bool operator==(const State& other) const;
    };

    /// Opens it, without waiting for anybody. Throws FileError, also for all that is no regular file.
    explicit ReadableFile(const std::string& path);

    const platform::Descriptor& descriptor() const { return descriptor_; }
    State state() const;

    /// Reads it from its start to its end, piece by piece, and answers the count of bytes. Throws FileError.
    off_t read(const std::function<void(std::string_view piece)>& take) const;

  private:
    std::string path_;
    platform::Descriptor descriptor_;
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
