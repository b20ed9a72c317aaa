#include "decoder/formats/Format.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace quorvantis::decoder {

namespace {

using namespace std::string_view_literals;

struct Magic {
    Format format;
    std::string_view bytes;
    std::size_t position = 0;
};

constexpr std::array magics = {
    Magic{Format::png, "\x89PNG\r\n\x1a\n"sv},
    Magic{Format::jpeg, "\xff\xd8\xff"sv},
    Magic{Format::gif, "GIF87a"sv},
    Magic{Format::gif, "GIF89a"sv},
    Magic{Format::webp, "WEBP"sv, 8},
    Magic{Format::tiff, "II*\0"sv},
    Magic{Format::tiff, "MM\0*"sv},
    Magic{Format::tiff, "II+\0"sv},  // BigTIFF
    Magic{Format::tiff, "MM\0+"sv},
    Magic{Format::bmp, "BM"sv},
    Magic{Format::ico, "\0\0\1\0"sv},
    Magic{Format::jpeg2000, "\0\0\0\x0cjP  \r\n\x87\n"sv},
    Magic{Format::jpeg2000, "\xff\x4f\xff\x51"sv},  // a bare code stream
};

constexpr std::array heifBrands = {"heic"sv, "heix"sv, "hevc"sv, "hevx"sv, "heim"sv,
                                   "heis"sv, "mif1"sv, "msf1"sv, "avif"sv, "avis"sv};

}  // namespace

std::optional<Format> recognisedFormat(std::span<const std::uint8_t> start) {
    const std::string_view text(reinterpret_cast<const char*>(start.data()), start.size());
    for (const auto& magic : magics)
        if (text.size() >= magic.position && text.substr(magic.position).starts_with(magic.bytes))
            return magic.format;
    if (text.size() < 12 || text.substr(4, 4) != "ftyp") return std::nullopt;
    const auto brand = std::find(heifBrands.begin(), heifBrands.end(), text.substr(8, 4));
    return brand == heifBrands.end() ? std::nullopt : std::optional(Format::heif);
}

}  // namespace quorvantis::decoder
