#include "ImageLibrary.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <unordered_map>
#include <utility>
#include <vector>

#include "Database.h"
#include "Entries.h"
#include "History.h"
#include "PictureType.h"
#include "imaging/AttachmentIdentity.h"
#include "json/Date.h"
#include "json/UUID.h"
#include "platform/FileSystem.h"
#include "support/Files.h"
#include "support/Paths.h"

namespace quorvantis::standin {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t atATime = 8;  // files that are read before requests are answered again

/// The UUID of the hash's first 32 digits.
UUID identifierFrom(const std::string& hash) {
    std::string text = hash.substr(0, 32);
    for (const int hyphen : {8, 13, 18, 23}) text.insert(static_cast<std::size_t>(hyphen), 1, '-');
    return UUID::parse(text).value();
}

std::optional<std::string> typeAt(const std::string& path) try {
    return pictureTypeAt(path);
} catch (const FileError&) {
    return std::nullopt;
}

}  // namespace

void ImageLibrary::checkFolders(const std::vector<std::string>& folders) {
    for (const std::string& root : folders) {
        std::error_code error;
        static_cast<void>(fs::directory_iterator(root, error));
        if (error) throw std::runtime_error(root + ": " + FileError::system(error.value()).what());
    }
}

std::vector<ImageLibrary::File> ImageLibrary::files() {
    const std::string own = parentPath(history_.database().path());
    std::vector<File> found;
    folders_ = roots_;
    for (const std::string& root : roots_) {
        std::error_code error;
        fs::recursive_directory_iterator entry(root, fs::directory_options::skip_permission_denied, error);
        for (; !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
            const std::string path = entry->path().native();
            std::error_code gone;
            if (path == own) entry.disable_recursion_pending();
            if (path != own && entry->symlink_status(gone).type() == fs::file_type::directory)
                folders_.push_back(path);
            struct stat status;
            if (stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) continue;
            const auto changed = platform::changeTime(status);
            found.push_back(
                {path, status.st_size, changed.tv_sec * 1'000'000'000 + changed.tv_nsec, status.st_mtime});
        }
    }
    return found;
}

void ImageLibrary::look() {
    auto present = files();
    std::unordered_map<std::string, const File*> files;
    for (const File& file : present) files[file.path] = &file;
    std::vector<std::string> gone, withoutEntry, lost;
    {
        Rows rows = history_.database().run(
            "select path, size, changedAt, pixelHash is not null, entry is not null from knownFile");
        while (rows.next()) {
            const std::string path(rows.text(0));
            const auto file = files.find(path);
            const bool isPicture = rows.integer(3) != 0, hasEntry = rows.integer(4) != 0;
            const bool isSame = file != files.end() && file->second->size == rows.integer(1) &&
                                file->second->changedAt == rows.integer(2);
            if (!isSame && hasEntry) gone.push_back(path);
            if (file == files.end() && access(path.c_str(), F_OK) != 0) lost.push_back(path);
            if (isSame && isPicture && !hasEntry) withoutEntry.push_back(path);
            if (isSame) files.erase(file);
        }
    }
    if (!gone.empty() || !lost.empty() || !withoutEntry.empty())
        history_.database().inTransaction([&] {
            for (const std::string& path : gone) forgetEntry(path);
            for (const std::string& path : lost)
                history_.database().run("delete from knownFile where path = ?", path);
            for (const std::string& path : withoutEntry) addEntry(path);
        });
    std::erase_if(present, [&](const File& file) { return !files.contains(file.path); });
    unread_ = std::move(present);
}

void ImageLibrary::readSome() {
    std::vector<File> next(unread_.end() - static_cast<std::ptrdiff_t>(std::min(atATime, unread_.size())),
                           unread_.end());
    unread_.resize(unread_.size() - next.size());
    remember(next);
}

void ImageLibrary::remember(const std::vector<File>& files) {
    std::vector<std::optional<std::string>> types;
    std::vector<std::string> pictures;
    for (const File& file : files) {
        types.push_back(typeAt(file.path));
        if (types.back()) pictures.push_back(file.path);
    }
    const auto identities = HelperIO::attachmentIdentities(pictures, std::chrono::minutes(pictures.size()));
    history_.database().inTransaction([&] {
        auto identity = identities.begin();
        for (std::size_t i = 0; i < files.size(); ++i) {
            const auto known = types[i] ? (identity++)->value_or(AttachmentIdentity()) : AttachmentIdentity();
            const auto& [path, size, changedAt, modifiedAt] = files[i];
            forgetEntry(path);
            history_.database().run(
                "insert or replace into knownFile values (?, ?, ?, ?, ?, ?, ?, ?, ?, null)", path, size,
                changedAt, known.sha256, known.pixelHash, known.pixelWidth, known.pixelHeight, types[i],
                Date::sinceEpoch(modifiedAt));
            if (known.pixelHash) addEntry(path);
        }
    });
}

void ImageLibrary::forgetEntry(const std::string& path) {
    std::optional<std::int64_t> entry;
    {
        Rows rows = history_.database().run("select entry from knownFile where path = ?", path);
        if (rows.next()) rows.read(0, entry);
    }
    if (entry) history_.erase(*entry);
}

void ImageLibrary::addEntry(const std::string& path) {
    DecodedPicture picture = {.path = path};
    Date modifiedAt;
    {
        Rows rows = history_.database().run(
            "select size, uti, modifiedAt, sha256, pixelHash, pixelWidth, pixelHeight from knownFile where path = ?",
            path);
        if (!rows.next()) return;
        rows.read(0, picture.byteCount);
        rows.read(1, picture.uti);
        rows.read(2, modifiedAt);
        rows.read(3, picture.identity.sha256);
        rows.read(4, picture.identity.pixelHash);
        rows.read(5, picture.identity.pixelWidth);
        rows.read(6, picture.identity.pixelHeight);
    }
    picture.name = pictureName(path, picture.identity.sha256, picture.uti);
    // Of several files with the same bytes one has an entry.
    const auto number =
        history_.insert(pictureEntry(identifierFrom(picture.identity.sha256), modifiedAt, picture));
    if (number) history_.database().run("update knownFile set entry = ? where path = ?", *number, path);
}

std::string ImageLibrary::fileNamed(const std::string& name) const {
    Rows rows = history_.database().run(
        "select path, sha256 from knownFile"
        " where sha256 in (select sha256 from knownFile where entry is not null)");
    while (rows.next())
        if (lastPathComponent(rows.text(0)) == name) return std::string(rows.text(1));
    throw std::runtime_error("There is no picture \"" + name + "\" in the folders of pictures.");
}

}  // namespace quorvantis::standin
