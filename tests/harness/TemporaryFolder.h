#pragma once

#include <filesystem>
#include <fstream>
#include <stdlib.h>
#include <string>
#include <unistd.h>

namespace quorvantis::harness {

/// A new empty folder, removed with all that is in it.
class TemporaryFolder {
  public:
    TemporaryFolder() : path_(mkdtemp(std::string("/tmp/quorvantis-XXXXXX").data())) {}
    TemporaryFolder(const TemporaryFolder&) = delete;
    ~TemporaryFolder() { std::filesystem::remove_all(path_); }

    const std::string& path() const { return path_; }
    std::string operator/(const std::string& name) const { return path_ + "/" + name; }

  private:
    std::string path_;
};

/// Writes a file and makes the folders above it.
inline void writeText(const std::filesystem::path& path, const std::string& text) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << text;
}

inline std::ptrdiff_t itemsIn(const std::string& folder) {
    return std::distance(std::filesystem::directory_iterator(folder), {});
}

}  // namespace quorvantis::harness
