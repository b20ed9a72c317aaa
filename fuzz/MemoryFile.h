#pragma once

#include <cstdlib>
#include <string>
#include <string_view>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quorvantis::fuzz {

/// A file in memory that is open on the descriptor for as long as the process runs.
class MemoryFile {
  public:
    explicit MemoryFile(int descriptor) : descriptor_(descriptor) {
        const int file = memfd_create("fuzz", 0);
        if (file == descriptor) return;
        if (dup2(file, descriptor) < 0) std::abort();
        close(file);
    }

    /// Replaces the content. The next byte to be read is the first one.
    void replace(std::string_view content) const {
        if (ftruncate(descriptor_, 0) != 0 || lseek(descriptor_, 0, SEEK_SET) != 0) std::abort();
        const auto size = static_cast<ssize_t>(content.size());
        if (pwrite(descriptor_, content.data(), content.size(), 0) != size) std::abort();
    }

    std::string content() const {
        struct stat status = {};
        fstat(descriptor_, &status);
        std::string content(static_cast<std::size_t>(status.st_size), '\0');
        if (pread(descriptor_, content.data(), content.size(), 0) != status.st_size) std::abort();
        return content;
    }

  private:
    int descriptor_;
};

}  // namespace quorvantis::fuzz
