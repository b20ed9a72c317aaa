#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "decoder/formats/Readers.h"
#include "decoder/formats/TIFFPicture.h"
#include "decoder/picture/GiveUp.h"
#include "decoder/picture/Layout.h"
#include "decoder/picture/Orientation.h"
#include "decoder/picture/PictureFile.h"
#include "decoder/picture/UprightPicture.h"
#include "imaging/DecodedPixels.h"

namespace quorvantis::decoder {

namespace {

/// What a pixel's samples mean.
struct Meaning {
    enum class Kind {
        light,  // 0 is black, or no ink
        dark,   // 0 is white
        palette,
        library,  // libtiff converts to RGBA
    };

    Kind kind = Kind::light;
    Layout layout = Layout::gray;  // of the rows passed to UprightPicture
    std::uint32_t colours = 1;     // samples per pixel, without alpha
    bool premultiplied = false;
};

Meaning meaningOfColours(const TIFFPicture& tiff) {
    using enum Meaning::Kind;
    const auto compression = tiff.field(TIFFTAG_COMPRESSION);
    std::uint16_t stated = 0;
    if (!TIFFGetField(tiff.handle(), TIFFTAG_PHOTOMETRIC, &stated)) giveUp();
    switch (tiff.field(TIFFTAG_PHOTOMETRIC)) {
        case PHOTOMETRIC_MINISWHITE: return {dark, Layout::gray, 1};
        case PHOTOMETRIC_MINISBLACK: return {light, Layout::gray, 1};
        case PHOTOMETRIC_RGB: return {light, Layout::rgb, 3};
        case PHOTOMETRIC_PALETTE: return {palette, Layout::rgb, 1};
        case PHOTOMETRIC_SEPARATED: return {light, Layout::cmyk, 4};
        case PHOTOMETRIC_YCBCR:
            if (compression == COMPRESSION_JPEG) return {light, Layout::rgb, 3};
            [[fallthrough]];
        default: return {library, Layout::rgba, 1, true};
    }
}

Meaning meaningOfSamples(const TIFFPicture& tiff) {
    Meaning meaning = meaningOfColours(tiff);
    std::uint16_t count = 0;
    std::uint16_t* kinds = nullptr;
    const bool declared = TIFFGetField(tiff.handle(), TIFFTAG_EXTRASAMPLES, &count, &kinds) && count > 0;
    // Many writers do not say what a fourth sample is, and readers take it for alpha.
    const bool alpha = declared ? kinds[0] != EXTRASAMPLE_UNSPECIFIED : tiff.samples() == meaning.colours + 1;
    if (!alpha || tiff.samples() <= meaning.colours) return meaning;
    // The colours of a palette cannot be multiplied by alpha.
    if (meaning.kind == Meaning::Kind::palette && (!declared || kinds[0] != EXTRASAMPLE_UNASSALPHA))
        return meaning;
    if (meaning.layout == Layout::gray) meaning.layout = Layout::grayAlpha;
    if (meaning.layout == Layout::rgb) meaning.layout = Layout::rgba;
    meaning.premultiplied = hasAlpha(meaning.layout) && declared && kinds[0] == EXTRASAMPLE_ASSOCALPHA;
    return meaning;
}

PictureHeader pictureHeader(const TIFFPicture& tiff, const Meaning& meaning) {
    PictureHeader header;
    header.size = {tiff.width(), tiff.height()};
    header.layout = meaning.layout;
    header.premultiplied = meaning.premultiplied;
    header.orientation = validOrientation(tiff.field(TIFFTAG_ORIENTATION)).value_or(upright);
    std::uint32_t size = 0;
    const std::uint8_t* profile = nullptr;
    if (TIFFGetField(tiff.handle(), TIFFTAG_ICCPROFILE, &size, &profile))
        header.colours.profile = {profile, profile + size};
    return header;
}

/// The colours of a palette, as 8-bit samples.
class Palette {
  public:
    explicit Palette(const TIFFPicture& tiff) {
        std::array<std::uint16_t*, 3> maps = {};
        const std::size_t count = std::size_t{1} << tiff.bits();
        if (tiff.bits() > 8 || !TIFFGetField(tiff.handle(), TIFFTAG_COLORMAP, &maps[0], &maps[1], &maps[2]))
            giveUp();
        // The values should have 16 bits, but some writers store 8, and others multiply by 256, not 257.
        const bool narrow = std::ranges::all_of(
            maps, [&](const std::uint16_t* map) { return *std::max_element(map, map + count) < 256; });
        for (std::size_t i = 0; i < count; ++i)
            for (std::size_t c = 0; c < 3; ++c)
                colours_[i][c] = static_cast<std::uint8_t>(narrow ? maps[c][i] : maps[c][i] >> 8);
    }

    const std::array<std::uint8_t, 3>& operator[](std::size_t index) const { return colours_[index]; }

  private:
    std::array<std::array<std::uint8_t, 3>, 256> colours_ = {};
};

void addPaletteRows(TIFFPicture& tiff, Layout layout, UprightPicture& picture) {
    const Palette palette(tiff);
    const unsigned opaque = (1U << tiff.bits()) - 1;
    std::vector<std::uint8_t> rows;
    for (std::uint32_t y = 0; y < tiff.height(); y += tiff.rowsAtOnce()) {
        const auto indices = tiff.readRows(y, false);
        rows.clear();
        for (std::size_t i = 0; i < indices.size(); i += tiff.samples()) {
            rows.insert(rows.end(), palette[indices[i]].begin(), palette[indices[i]].end());
            if (hasAlpha(layout))
                rows.push_back(static_cast<std::uint8_t>((indices[i + 1] * 255U + opaque / 2) / opaque));
        }
        picture.addRows(rows);
    }
}

void addRows(TIFFPicture& tiff, const Meaning& meaning, UprightPicture& picture) {
    const std::size_t wanted = samplesPerPixel(meaning.layout);
    std::vector<std::uint8_t> rows;
    for (std::uint32_t y = 0; y < tiff.height(); y += tiff.rowsAtOnce()) {
        const auto samples = tiff.readRows(y, true);
        if (tiff.samples() == wanted && meaning.kind == Meaning::Kind::light) {
            picture.addRows(samples);
            continue;
        }
        rows.clear();
        for (std::size_t i = 0; i < samples.size(); i += tiff.samples()) {
            const auto pixel = samples.subspan(i, wanted);
            rows.insert(rows.end(), pixel.begin(), pixel.end());
            auto& gray = rows[rows.size() - wanted];
            if (meaning.kind == Meaning::Kind::dark) gray = static_cast<std::uint8_t>(255 - gray);
        }
        picture.addRows(rows);
    }
}

void addLibraryRows(TIFFPicture& tiff, UprightPicture& picture) {
    std::vector<std::uint32_t> pixels(std::size_t{tiff.width()} * tiff.height());
    // That of the file, so that libtiff rotates nothing.
    const int orientation = validOrientation(tiff.field(TIFFTAG_ORIENTATION)).value_or(upright);
    if (!TIFFReadRGBAImageOriented(tiff.handle(), tiff.width(), tiff.height(), pixels.data(), orientation, 1))
        giveUp();
    std::vector<std::uint8_t> row(picture.rowSize());
    for (std::size_t at = 0; at < pixels.size(); at += tiff.width()) {
        for (std::size_t x = 0; x < tiff.width(); ++x) {
            const std::uint32_t pixel = pixels[at + x];
            const std::array bytes = {TIFFGetR(pixel), TIFFGetG(pixel), TIFFGetB(pixel), TIFFGetA(pixel)};
            std::ranges::copy(bytes, row.begin() + static_cast<std::ptrdiff_t>(x * 4));
        }
        picture.addRow(row);
    }
}

}  // namespace

DecodedPixels readTIFF(const PictureFile& file) {
    TIFFPicture tiff(file);
    const auto meaning = meaningOfSamples(tiff);
    const auto format = tiff.field(TIFFTAG_SAMPLEFORMAT);
    const bool integers = format == SAMPLEFORMAT_UINT || format == SAMPLEFORMAT_VOID;
    if (!integers || tiff.samples() < meaning.colours) giveUp();
    UprightPicture picture(pictureHeader(tiff, meaning));
    switch (meaning.kind) {
        case Meaning::Kind::palette: addPaletteRows(tiff, meaning.layout, picture); break;
        case Meaning::Kind::library: addLibraryRows(tiff, picture); break;
        default: addRows(tiff, meaning, picture);
    }
    return picture.finish();
}

}  // namespace quorvantis::decoder
