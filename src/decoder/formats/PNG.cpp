#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <png.h>
#include <span>
#include <string_view>
#include <vector>

#include "decoder/formats/Readers.h"
#include "decoder/picture/Colour.h"
#include "decoder/picture/GiveUp.h"
#include "decoder/picture/Layout.h"
#include "decoder/picture/Orientation.h"
#include "decoder/picture/PictureFile.h"
#include "decoder/picture/UprightPicture.h"
#include "imaging/DecodedPixels.h"
#include "imaging/PixelHasher.h"

namespace quorvantis::decoder {

namespace {

using namespace std::string_view_literals;

// Chunks that libpng would keep in memory, at whatever size they claim: names of four letters, each followed
// by 0.
constexpr std::string_view unused = "tEXt\0zTXt\0iTXt\0sPLT\0sCAL\0pCAL\0hIST\0tIME\0"sv;

class Decoder {
  public:
    explicit Decoder(PictureReader& reader)
        : png_(png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, fail, ignore)),
          info_(png_create_info_struct(png_)) {
        if (!png_ || !info_) giveUp();
        png_set_user_limits(png_, static_cast<png_uint_32>(pixelBudget),
                            static_cast<png_uint_32>(pixelBudget));
        png_set_keep_unknown_chunks(png_, PNG_HANDLE_CHUNK_NEVER,
                                    reinterpret_cast<png_const_bytep>(unused.data()),
                                    static_cast<int>(unused.size() / 5));
        png_set_keep_unknown_chunks(png_, PNG_HANDLE_CHUNK_ALWAYS, reinterpret_cast<png_const_bytep>("cICP"),
                                    1);
        png_set_option(png_, PNG_MAXIMUM_INFLATE_WINDOW, PNG_OPTION_ON);  // of whatever size the header tells
        png_set_read_fn(png_, &reader, read);
    }
    Decoder(const Decoder&) = delete;
    Decoder& operator=(const Decoder&) = delete;
    ~Decoder() { png_destroy_read_struct(&png_, &info_, nullptr); }

    PictureHeader header() {
        png_read_info(png_, info_);
        PictureHeader header;
        header.size = {png_get_image_width(png_, info_), png_get_image_height(png_, info_)};
        header.colours = colours();
        png_set_expand(png_);    // palettes, transparent colours, fewer than 8 bits
        png_set_scale_16(png_);  // exactly round(v / 257)
        if (png_get_color_type(png_, info_) & PNG_COLOR_MASK_COLOR)
            png_set_add_alpha(png_, 255, PNG_FILLER_AFTER);
        passes_ = png_set_interlace_handling(png_);
        const bool opaque = !(png_get_color_type(png_, info_) & PNG_COLOR_MASK_ALPHA) &&
                            !png_get_valid(png_, info_, PNG_INFO_tRNS);
        png_read_update_info(png_, info_);
        header.layout = layout(opaque);
        return header;
    }

    void decode(UprightPicture& picture, const Size& size) {
        if (png_get_rowbytes(png_, info_) != picture.rowSize()) giveUp();
        const auto height = static_cast<std::size_t>(size.height);
        std::vector<std::uint8_t> pixels(picture.rowSize() * (passes_ > 1 ? height : 1));
        for (int pass = 1; pass < passes_; ++pass)
            for (std::size_t y = 0; y < height; ++y) readRow(pixels, y, picture.rowSize());
        for (std::size_t y = 0; y < height; ++y)
            picture.addRow(readRow(pixels, passes_ > 1 ? y : 0, picture.rowSize()));
        png_read_end(png_, info_);
    }

    /// According to the chunks read so far.
    Orientation orientation() const {
        png_uint_32 size = 0;
        png_bytep exif = nullptr;
        if (!png_get_eXIf_1(png_, info_, &size, &exif)) return upright;
        return exifOrientation({exif, size}).value_or(upright);
    }

  private:
    static void fail(png_structp, png_const_charp) { giveUp(); }
    static void ignore(png_structp, png_const_charp) {}
    static void read(png_structp png, png_bytep bytes, std::size_t size) {
        if (static_cast<PictureReader*>(png_get_io_ptr(png))->read({bytes, size}) != size) giveUp();
    }

    std::span<std::uint8_t> readRow(std::vector<std::uint8_t>& pixels, std::size_t y, std::size_t size) {
        const auto row = std::span(pixels).subspan(y * size, size);
        png_read_row(png_, row.data(), nullptr);
        return row;
    }

    Layout layout(bool opaque) const {
        switch (png_get_channels(png_, info_)) {
            case 1: return Layout::gray;
            case 2: return Layout::grayAlpha;
            default: return opaque ? Layout::rgbx : Layout::rgba;
        }
    }

    /// The colour space of a cICP chunk; empty unless it is sRGB or Display P3.
    std::optional<ColourSpace> codePoints() const {
        png_unknown_chunkp chunks = nullptr;
        const int count = png_get_unknown_chunks(png_, info_, &chunks);
        if (count < 1 || chunks[0].size != 4) return std::nullopt;
        // Primaries, transfer function, matrix and range (ITU-T H.273).
        const std::array<std::uint8_t, 4> points = {chunks[0].data[0], chunks[0].data[1], chunks[0].data[2],
                                                    chunks[0].data[3]};
        if (points == std::array<std::uint8_t, 4>{1, 13, 0, 1}) return ColourSpace();
        if (points != std::array<std::uint8_t, 4>{12, 13, 0, 1}) return std::nullopt;
        return ColourSpace{.profile = {},
                           .calibration = {{.exponent = std::nullopt,
                                            .whiteAndPrimaries = {0.3127, 0.3290, 0.680, 0.320, 0.265, 0.690,
                                                                  0.150, 0.060}}}};
    }

    ColourSpace colours() const {
        if (const auto named = codePoints()) return *named;
        png_charp name = nullptr;
        png_bytep profile = nullptr;
        png_uint_32 size = 0;
        int method = 0;
        if (png_get_iCCP(png_, info_, &name, &method, &profile, &size))
            return {.profile = {profile, profile + size}, .calibration = {}};
        if (png_get_valid(png_, info_, PNG_INFO_sRGB)) return {};
        double gamma = 0;
        if (!png_get_gAMA(png_, info_, &gamma) || gamma <= 0) return {};
        Calibration calibration = {.exponent = 1 / gamma};
        auto& c = calibration.whiteAndPrimaries;
        png_get_cHRM(png_, info_, &c[0], &c[1], &c[2], &c[3], &c[4], &c[5], &c[6], &c[7]);
        return {.profile = {}, .calibration = calibration};
    }

    png_structp png_;
    png_infop info_;
    int passes_ = 1;
};

DecodedPixels readOriented(const PictureFile& file, std::uint64_t position,
                           std::optional<Orientation> known) {
    PictureReader reader(file, position);
    Decoder decoder(reader);
    auto header = decoder.header();
    header.orientation = known.value_or(decoder.orientation());
    UprightPicture picture(header);
    decoder.decode(picture, header.size);
    auto pixels = picture.finish();
    // The eXIf chunk may follow the rows (PNG 1.5 extensions, 3.7); then decode again with its orientation.
    const auto orientation = decoder.orientation();
    return orientation == header.orientation ? pixels : readOriented(file, position, orientation);
}

}  // namespace

DecodedPixels readPNG(const PictureFile& file, std::uint64_t position) {
    return readOriented(file, position, std::nullopt);
}

DecodedPixels readPNG(const PictureFile& file) {
    return readPNG(file, 0);
}

}  // namespace quorvantis::decoder
