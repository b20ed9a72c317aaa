#pragma once

#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <time.h>

#include "../platform/Descriptors.h"

namespace quorvantis {

/// A file operation failed. `what()` is one sentence for the user.
class FileError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;

    // `code` is the system's error number.

    /// A file could not be opened or read.
    static FileError reading(std::string_view path, int code);
    /// An executable could not be started.
    static FileError starting(std::string_view path, int code);
    /// Any other operation failed.
    static FileError system(int code);
};

/// A regular file, open for reading.
class ReadableFile {
  public:
    /// Changes whenever the file is written to.
    struct State {
        off_t size;        // bytes
        timespec changed;  // st_ctime

        bool operator==(const State& other) const;
    };

    /// Opens the file without blocking. Throws FileError, also if it is not a regular file.
    explicit ReadableFile(const std::string& path);

    const platform::Descriptor& descriptor() const { return descriptor_; }
    State state() const;

    /// Reads the whole file in pieces and returns its size in bytes. Throws FileError, also if the file does
    /// not end within 64 MiB beyond the size that the system told before: some of the system's own never do.
    off_t read(const std::function<void(std::string_view piece)>& take) const;

  private:
    std::string path_;
    platform::Descriptor descriptor_;
};

// The functions below throw FileError.

/// Reads a regular file in pieces.
void readFile(const std::string& path, const std::function<void(std::string_view piece)>& take);

/// Returns the content of a regular file.
std::string readFile(const std::string& path);

/// Returns the content of anything that can be read to its end, such as a pipe: it may block. Throws also for
/// a folder, and for more than `maximumSize` bytes.
std::string readAny(const std::string& path, std::size_t maximumSize);

/// Replaces the file atomically: readers see either the old file or the complete new one. A symbolic link at
/// the path is replaced, not followed. The new file has mode 0600. It is not forced to the disk, which would
/// take longer than all else at the start of a session: after a power failure the file may be the old one, or
/// empty. What an earlier writer left beside it when it was killed is removed.
void replaceFile(const std::string& path, std::string_view content);

/// Creates the folder and its missing parents.
void makeFolders(const std::string& path);

}  // namespace quorvantis
