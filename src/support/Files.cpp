#include "support/Files.h"

#include <cstdio>
#include <errno.h>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <memory>
#include <stdlib.h>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <time.h>
#include <unistd.h>

#include "platform/Descriptors.h"
#include "platform/FileSystem.h"
#include "support/Paths.h"

namespace quorvantis {

namespace {

using platform::Descriptor;

constexpr off_t maximumGrowth = 64 << 20;  // bytes
constexpr std::size_t readSize = 65536;

// Not on the stack, where each of its pages would be touched at the start (-fstack-clash-protection).
std::unique_ptr<char[]> readBuffer() {
    return std::make_unique_for_overwrite<char[]>(readSize);
}

struct stat statusOf(const Descriptor& file, const std::string& path) {
    struct stat status;
    if (fstat(file.get(), &status) != 0) throw FileError::reading(path, errno);
    return status;
}

void writeWhole(const Descriptor& file, std::string_view content) {
    while (!content.empty()) {
        const ssize_t written = write(file.get(), content.data(), content.size());
        if (written < 0 && errno != EINTR) throw FileError::system(errno);
        if (written > 0) content.remove_prefix(static_cast<std::size_t>(written));
    }
}

constexpr std::string_view temporaryEnding = "XXXXXX";  // mkostemp(3) makes letters and digits of it

std::string temporaryPath(const std::string& target) {
    return joinedPath(parentPath(target), "." + lastPathComponent(target) + ".") +
           std::string(temporaryEnding);
}

/// A new file in the folder of the file that it will replace. The destructor removes it unless it was moved.
class TemporaryFile {
  public:
    explicit TemporaryFile(const std::string& target)
        : path_(temporaryPath(target)), file_(mkostemp(path_.data(), O_CLOEXEC)) {
        if (!file_) throw FileError::system(errno);
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() {
        if (!path_.empty()) unlink(path_.c_str());
    }

    const Descriptor& file() const { return file_; }

    void moveTo(const std::string& target) {
        // Some file systems tell only now that they could not store what was written.
        if (close(file_.release()) != 0) throw FileError::system(errno);
        if (rename(path_.c_str(), target.c_str()) != 0) throw FileError::system(errno);
        path_.clear();
    }

  private:
    std::string path_;
    Descriptor file_;
};

Descriptor opened(const std::string& path) {
    if (path.find('\0') != path.npos) throw FileError::reading(path, ENOENT);  // no path contains a NUL
    // O_NONBLOCK because opening a FIFO would wait for a writer. Opening a socket fails with ENXIO, or
    // EOPNOTSUPP on macOS.
    Descriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    if (!file) throw FileError::reading(path, errno);
    return file;
}

/// Removes the temporary files that killed writers of `target` left: those not written to for a minute.
void removeLeftOver(const std::string& target) {
    const std::string pattern = lastPathComponent(temporaryPath(target));
    const auto start = std::string_view(pattern).substr(0, pattern.size() - temporaryEnding.size());
    std::error_code error;
    for (std::filesystem::directory_iterator files(parentPath(target), error), end; !error && files != end;
         files.increment(error)) {
        const std::string name = files->path().filename();
        if (name.size() != pattern.size() || !name.starts_with(start)) continue;
        struct stat status;
        if (lstat(files->path().c_str(), &status) == 0 && time(nullptr) - status.st_mtime > 60)
            unlink(files->path().c_str());
    }
}

}  // namespace

FileError FileError::reading(std::string_view path, int code) {
    std::string sentence = "The file “" + lastPathComponent(path) + "” couldn’t be opened";
    if (code == ENOENT) sentence += " because there is no such file";
    if (code == EACCES || code == EPERM || code == ENXIO || code == EOPNOTSUPP)
        sentence += " because you don’t have permission to view it";
    return FileError(sentence + ".");
}

FileError FileError::starting(std::string_view path, int code) {
    if (code != ENOENT) return system(code);
    return FileError("The file “" + lastPathComponent(path) + "” doesn’t exist.");
}

FileError FileError::system(int code) {
    return FileError("The operation couldn’t be completed. (" + std::generic_category().message(code) + ")");
}

ReadableFile::ReadableFile(const std::string& path) : path_(path), descriptor_(opened(path)) {
    const auto mode = statusOf(descriptor_, path).st_mode;
    if (S_ISDIR(mode)) throw FileError::reading(path, EISDIR);
    if (!S_ISREG(mode)) throw FileError::reading(path, EACCES);
}

ReadableFile::State ReadableFile::state() const {
    const auto status = statusOf(descriptor_, path_);
    return {.size = status.st_size, .changed = platform::changeTime(status)};
}

bool ReadableFile::State::operator==(const State& other) const {
    return size == other.size && changed.tv_sec == other.changed.tv_sec &&
           changed.tv_nsec == other.changed.tv_nsec;
}

off_t ReadableFile::read(const std::function<void(std::string_view)>& take) const {
    const auto buffer = readBuffer();
    const off_t maximumEnd = state().size + maximumGrowth;
    for (off_t position = 0;;) {
        if (position > maximumEnd) throw FileError::reading(path_, EFBIG);
        const ssize_t count = pread(descriptor_.get(), buffer.get(), readSize, position);
        if (count == 0) return position;
        if (count < 0 && errno != EINTR) throw FileError::reading(path_, errno);
        if (count < 0) continue;
        take({buffer.get(), static_cast<std::size_t>(count)});
        position += count;
    }
}

void readFile(const std::string& path, const std::function<void(std::string_view)>& take) {
    ReadableFile(path).read(take);
}

std::string readFile(const std::string& path) {
    std::string content;
    readFile(path, [&](std::string_view piece) { content += piece; });
    return content;
}

std::string readAny(const std::string& path, std::size_t maximumSize) {
    const Descriptor file = opened(path);
    if (S_ISDIR(statusOf(file, path).st_mode)) throw FileError::reading(path, EISDIR);
    fcntl(file.get(), F_SETFL, 0);  // a pipe may have nothing to read yet
    std::string content;
    const auto buffer = readBuffer();
    for (;;) {
        const ssize_t count = ::read(file.get(), buffer.get(), readSize);
        if (count == 0) return content;
        if (count < 0 && errno != EINTR) throw FileError::reading(path, errno);
        if (count > 0) content.append(buffer.get(), static_cast<std::size_t>(count));
        if (content.size() > maximumSize) throw FileError::reading(path, EFBIG);
    }
}

void replaceFile(const std::string& path, std::string_view content) {
    TemporaryFile temporary(path);
    writeWhole(temporary.file(), content);
    temporary.moveTo(path);
    removeLeftOver(path);
}

void makeFolders(const std::string& path) {
    std::error_code error;
    std::filesystem::create_directories(path, error);
    if (error) throw FileError::system(error.value());
}

}  // namespace quorvantis
