#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "History.h"

namespace quorvantis::standin {

/// The pictures in folders and their subfolders, as entries of the history: each as if it had been copied
/// when its file was last modified. What decodes is a picture. The database keeps what is known of each file,
/// so that a file is read again only when its size or its change time is another.
class ImageLibrary {
  public:
    /// Throws std::runtime_error when a folder cannot be read.
    static void checkFolders(const std::vector<std::string>& folders);

    /// `look` and `readSome` throw std::runtime_error when the history cannot be changed.
    ImageLibrary(History& history, std::vector<std::string> folders)
        : history_(history), roots_(std::move(folders)) {}

    /// The folders and all their subfolders, as of the last `look`.
    const std::vector<std::string>& folders() const { return folders_; }

    /// Looks what files there are: those that are gone leave the history, as do those of folders that are
    /// served no more.
    void look();
    /// The number of files that are still to be read.
    std::size_t unread() const { return unread_.size(); }
    /// Reads some of them.
    void readSome();

    /// The SHA-256 of the picture with this file name. Throws std::runtime_error when there is none.
    std::string fileNamed(const std::string& name) const;

  private:
    struct File {
        std::string path;
        std::int64_t size = 0;
        std::int64_t changedAt = 0;   // nanoseconds
        std::int64_t modifiedAt = 0;  // seconds since 1970
    };

    std::vector<File> files();
    void remember(const std::vector<File>& files);
    void forgetEntry(const std::string& path);
    void addEntry(const std::string& path);

    History& history_;
    std::vector<std::string> roots_;
    std::vector<std::string> folders_;
    std::vector<File> unread_;
};

}  // namespace quorvantis::standin
