#include "PictureType.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unistd.h>
#include <utility>
#include <vector>

#include "decoder/formats/Format.h"
#include "support/Files.h"
#include "support/Paths.h"
#include "support/UTF8.h"

namespace quorvantis::standin {

namespace {

/// The brand, from byte 8 on, names the codec.
std::string heifType(std::string_view start) {
    const std::string_view brand = start.substr(8, 4);
    if (brand.starts_with("avi")) return "public.avif";
    return brand.starts_with("he") ? "public.heic" : "public.heif";
}

/// As in ".png".
std::string_view fileEnding(std::string_view uti) {
    constexpr std::array<std::pair<std::string_view, std::string_view>, 11> endings = {{
        {"public.png", ".png"},
        {"public.jpeg", ".jpg"},
        {"com.compuserve.gif", ".gif"},
        {"org.webmproject.webp", ".webp"},
        {"public.tiff", ".tiff"},
        {"com.microsoft.bmp", ".bmp"},
        {"com.microsoft.ico", ".ico"},
        {"public.avif", ".avif"},
        {"public.heic", ".heic"},
        {"public.heif", ".heif"},
        {"public.jpeg-2000", ".jp2"},
    }};
    for (const auto& [type, ending] : endings)
        if (type == uti) return ending;
    return "";
}

}  // namespace

std::optional<std::string> pictureType(std::string_view bytes) {
    using decoder::Format;
    const std::vector<std::uint8_t> start(bytes.begin(),
                                          bytes.begin() + std::min(bytes.size(), decoder::recognisedBytes));
    const auto format = decoder::recognisedFormat(start);
    if (!format) return std::nullopt;
    switch (*format) {
        case Format::png: return "public.png";
        case Format::jpeg: return "public.jpeg";
        case Format::gif: return "com.compuserve.gif";
        case Format::webp: return "org.webmproject.webp";
        case Format::tiff: return "public.tiff";
        case Format::bmp: return "com.microsoft.bmp";
        case Format::ico: return "com.microsoft.ico";
        case Format::heif: return heifType(bytes);
        case Format::jpeg2000: return "public.jpeg-2000";
    }
    return std::nullopt;
}

std::optional<std::string> pictureTypeAt(const std::string& path) {
    const ReadableFile file(path);
    std::array<char, decoder::recognisedBytes> start;
    const ssize_t count = pread(file.descriptor().get(), start.data(), start.size(), 0);
    return pictureType({start.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0))});
}

std::string pictureName(const std::string& path, const std::string& sha256, std::string_view uti) {
    const std::string name = lastPathComponent(path);
    if (name != sha256) return repairedUTF8(name);
    return "copied-" + sha256.substr(0, 8) + std::string(fileEnding(uti));
}

}  // namespace quorvantis::standin
