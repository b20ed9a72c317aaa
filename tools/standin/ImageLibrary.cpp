#include "ImageLibrary.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <dirent.h>
#include <errno.h>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <vector>

#include "imaging/AttachmentIdentity.h"
#include "json/Date.h"
#include "json/JSON.h"
#include "json/UUID.h"
#include "support/Characters.h"
#include "support/Files.h"
#include "support/Paths.h"

namespace quorvantis::standin {

namespace {

constexpr double certain = 1, nearlyCertain = 0.95;

struct Type {
    std::string_view extension;
    std::string_view uti;
};
constexpr std::array<Type, 15> types = {{{"png", "public.png"},
                                         {"jpg", "public.jpeg"},
                                         {"jpeg", "public.jpeg"},
                                         {"gif", "com.compuserve.gif"},
                                         {"webp", "org.webmproject.webp"},
                                         {"tif", "public.tiff"},
                                         {"tiff", "public.tiff"},
                                         {"bmp", "com.microsoft.bmp"},
                                         {"ico", "com.microsoft.ico"},
                                         {"heic", "public.heic"},
                                         {"heif", "public.heif"},
                                         {"avif", "public.avif"},
                                         {"jp2", "public.jpeg-2000"},
                                         {"j2k", "public.jpeg-2000"},
                                         {"", "public.data"}}};

std::string typeOf(const std::string& file) {
    const std::string path = lowerCased(file);
    const auto found = std::find_if(types.begin(), types.end() - 1, [&](const Type& type) {
        return path.size() > type.extension.size() && path.ends_with(type.extension) &&
               path[path.size() - type.extension.size() - 1] == '.';
    });
    return std::string(found->uti);
}

std::vector<std::string> filesIn(const std::string& folder) {
    const std::unique_ptr<DIR, int (*)(DIR*)> opened(opendir(folder.c_str()), &closedir);
    if (!opened) throw FileError::reading(folder, errno);
    std::vector<std::string> paths;
    while (const dirent* entry = readdir(opened.get())) {
        const std::string path = joinedPath(folder, entry->d_name);
        struct stat status;
        if (stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode)) paths.push_back(path);
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

/// A UUID made of the hash's first digits.
UUID identifierFrom(const std::string& hash) {
    std::string text = hash.substr(0, 32);
    for (const int hyphen : {8, 13, 18, 23}) text.insert(static_cast<std::size_t>(hyphen), 1, '-');
    return UUID::parse(text).value();
}

Asset assetOf(const std::string& path, const AttachmentIdentity& identity) {
    struct stat status = {};
    stat(path.c_str(), &status);
    return {.path = path,
            .uti = typeOf(path),
            .entryID = identifierFrom(identity.sha256),
            .writtenAt = Date::sinceEpoch(status.st_mtime),
            .byteCount = status.st_size,
            .identity = identity};
}

}  // namespace

ImageLibrary::ImageLibrary(const std::string& folder) {
    const auto paths = filesIn(folder);
    const auto identities =
        HelperIO::attachmentIdentities(paths, HelperIO::decodingTimeout * (paths.size() + 1));
    for (std::size_t i = 0; i < paths.size(); ++i)
        if (identities[i]) assets_.push_back(assetOf(paths[i], *identities[i]));
}

const Asset* ImageLibrary::find(std::string_view assetID) const {
    const auto found =
        std::find_if(assets_.begin(), assets_.end(), [&](const Asset& a) { return a.assetID() == assetID; });
    return found == assets_.end() ? nullptr : &*found;
}

std::optional<Match> ImageLibrary::match(JSON attachment) const {
    for (const char* key : {"assetID", "sha256"})
        if (const Asset* asset = find(attachment[key].string().value_or(""))) return Match{asset, certain};
    const auto pixelHash = attachment["pixelHash"].string();
    if (!pixelHash) return std::nullopt;
    const auto found = std::find_if(assets_.begin(), assets_.end(), [&](const Asset& asset) {
        return asset.identity.pixelHash == pixelHash;
    });
    return found == assets_.end() ? std::nullopt : std::optional(Match{&*found, nearlyCertain});
}

}  // namespace quorvantis::standin
