#include "facts/PictureFacts.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <unistd.h>
#include <vector>

#include "decoder/formats/Format.h"
#include "facts/Formats.h"
#include "support/Files.h"

namespace quorvantis::standin {

using decoder::Format;

static constexpr off_t mostRead = 64 << 20;  // bytes

PictureFacts pictureFacts(std::span<const std::uint8_t> file) {
    const auto start = file.first(std::min(file.size(), decoder::recognisedBytes));
    const auto format = decoder::recognisedFormat(start);
    if (!format) return {};
    switch (*format) {
        case Format::png: return pngFacts(file);
        case Format::jpeg: return jpegFacts(file);
        case Format::gif: return gifFacts(file);
        case Format::tiff: return tiffFacts(file);
        case Format::webp: return webpFacts(file);
        default: return {};
    }
}

PictureFacts pictureFactsOf(const std::string& path) {
    const ReadableFile file(path);
    std::vector<std::uint8_t> start(static_cast<std::size_t>(std::min(file.state().size, mostRead)));
    const ssize_t count = pread(file.descriptor().get(), start.data(), start.size(), 0);
    return pictureFacts(std::span(start).first(static_cast<std::size_t>(std::max<ssize_t>(count, 0))));
}

}  // namespace quorvantis::standin
