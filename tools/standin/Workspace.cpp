#include "Workspace.h"

#include <errno.h>
#include <fcntl.h>
#include <stdexcept>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/Descriptors.h"
#include "support/Files.h"
#include "support/HelperIO.h"
#include "support/Paths.h"
#include "support/Streams.h"

namespace quorvantis::standin {

namespace {

using platform::Descriptor;

constexpr char imageFolder[] = "quorvantis-images";

Descriptor openImageFolder(const std::string& workspaceRoot) {
    if (!workspaceRoot.starts_with('/'))
        throw std::runtime_error("The workspace root must be an absolute path");
    const Descriptor root(open(workspaceRoot.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!root) throw std::runtime_error("The workspace root is not a folder");
    if (mkdirat(root.get(), imageFolder, 0777) != 0 && errno != EEXIST) throw FileError::system(errno);
    Descriptor folder(openat(root.get(), imageFolder, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!folder) throw FileError::system(errno);
    return folder;
}

bool isCopy(const std::string& path, const std::string& hash) {
    struct stat status;
    return lstat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
           HelperIO::sha256FileAt(path) == hash;
}

void copy(const std::string& file, const Descriptor& target, const std::string& hash) {
    const std::string content = readFile(file);
    if (HelperIO::sha256(content) != hash)
        throw std::runtime_error("The original has changed since it was read");
    if (!writeStream(target.get(), content)) throw FileError::system(errno);
}

/// Returns false when there is a file or a link of that name.
bool createCopy(const Descriptor& folder, const std::string& name, const std::string& file,
                const std::string& hash) {
    const Descriptor target(
        openat(folder.get(), name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
    if (!target && errno == EEXIST) return false;
    if (!target) throw FileError::system(errno);
    try {
        copy(file, target, hash);
    } catch (...) {
        unlinkat(folder.get(), name.c_str(), 0);
        throw;
    }
    return true;
}

}  // namespace

WorkspaceFile copyIntoWorkspace(const std::string& workspaceRoot, const Original& original) {
    const Descriptor folder = openImageFolder(workspaceRoot);
    const auto& [file, name, hash] = original;
    for (const std::string& candidate : {name, hash.substr(0, 16) + "-" + name}) {
        const std::string relativePath = joinedPath(imageFolder, candidate);
        const std::string path = joinedPath(workspaceRoot, relativePath);
        if (createCopy(folder, candidate, file, hash) || isCopy(path, hash)) return {path, relativePath};
    }
    throw std::runtime_error("The workspace has other files of the image's names");
}

}  // namespace quorvantis::standin
