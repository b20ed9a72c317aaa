#include "ImageLibrary.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <dirent.h>
#include <errno.h>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include "decoder/formats/Format.h"
#include "imaging/AttachmentIdentity.h"
#include "json/Date.h"
#include "json/JSON.h"
#include "json/UUID.h"
#include "support/Files.h"
#include "support/Paths.h"

namespace quorvantis::standin {

namespace {

constexpr double sameFileConfidence = 1, samePixelsConfidence = 0.95;

std::vector<std::uint8_t> startOf(const std::string& path) {
    const ReadableFile file(path);
    std::vector<std::uint8_t> start(decoder::recognisedBytes);
    const ssize_t count = pread(file.descriptor().get(), start.data(), start.size(), 0);
    start.resize(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    return start;
}

/// The brand, from byte 8 on, names the codec.
std::string heifType(std::span<const std::uint8_t> start) {
    const std::string brand(start.begin() + 8, start.begin() + 12);
    if (brand.starts_with("avi")) return "public.avif";
    return brand.starts_with("he") ? "public.heic" : "public.heif";
}

std::string typeOf(std::span<const std::uint8_t> start) {
    using decoder::Format;
    const auto format = decoder::recognisedFormat(start);
    if (!format) return "public.data";
    switch (*format) {
        case Format::png: return "public.png";
        case Format::jpeg: return "public.jpeg";
        case Format::gif: return "com.compuserve.gif";
        case Format::webp: return "org.webmproject.webp";
        case Format::tiff: return "public.tiff";
        case Format::bmp: return "com.microsoft.bmp";
        case Format::ico: return "com.microsoft.ico";
        case Format::heif: return heifType(start);
        case Format::jpeg2000: return "public.jpeg-2000";
    }
    return "public.data";
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

/// The UUID of the hash's first 32 digits.
UUID identifierFrom(const std::string& hash) {
    std::string text = hash.substr(0, 32);
    for (const int hyphen : {8, 13, 18, 23}) text.insert(static_cast<std::size_t>(hyphen), 1, '-');
    return UUID::parse(text).value();
}

Asset assetOf(const std::string& path, const AttachmentIdentity& identity) {
    struct stat status = {};
    stat(path.c_str(), &status);
    return {.path = path,
            .uti = typeOf(startOf(path)),
            .entryID = identifierFrom(identity.sha256),
            .modifiedAt = Date::sinceEpoch(status.st_mtime),
            .byteCount = status.st_size,
            .identity = identity};
}

}  // namespace

ImageLibrary::ImageLibrary(const std::string& folder) {
    const auto paths = filesIn(folder);
    const auto identities = HelperIO::attachmentIdentities(paths, std::chrono::minutes(paths.size()));
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
        if (const Asset* asset = find(attachment[key].string().value_or("")))
            return Match{asset, sameFileConfidence};
    const auto pixelHash = attachment["pixelHash"].string();
    if (!pixelHash) return std::nullopt;
    const auto found = std::find_if(assets_.begin(), assets_.end(), [&](const Asset& asset) {
        return asset.identity.pixelHash == pixelHash;
    });
    return found == assets_.end() ? std::nullopt : std::optional(Match{&*found, samePixelsConfidence});
}

}  // namespace quorvantis::standin
