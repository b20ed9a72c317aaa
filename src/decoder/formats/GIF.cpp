#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <gif_lib.h>
#include <span>
#include <vector>

#include "decoder/formats/Readers.h"
#include "decoder/picture/GiveUp.h"
#include "decoder/picture/PictureFile.h"
#include "decoder/picture/UprightPicture.h"
#include "imaging/DecodedPixels.h"
#include "imaging/PixelHasher.h"

namespace quorvantis::decoder {

namespace {

class Decoder {
  public:
    explicit Decoder(PictureReader& reader) : gif_(DGifOpen(&reader, read, nullptr)) {
        if (!gif_) giveUp();
    }
    Decoder(const Decoder&) = delete;
    Decoder& operator=(const Decoder&) = delete;
    ~Decoder() { DGifCloseFile(gif_, nullptr); }

    Size screen() const { return {gif_->SWidth, gif_->SHeight}; }

    /// Decodes the first frame.
    void readFrame() {
        while (nextRecord() != IMAGE_DESC_RECORD_TYPE) readExtension();
        require(DGifGetImageDesc(gif_));
        if (!isWithinPixelBudget(frame().Width, frame().Height)) giveUp();
        const auto* map = frame().ColorMap ? frame().ColorMap : gif_->SColorMap;
        if (!map) giveUp();
        colours_ = {map->Colors, map->Colors + map->ColorCount};
        readIndices();
    }

    /// Draws the frame's part of row `y` of the screen onto `rgba`.
    void drawRow(int y, std::span<std::uint8_t> rgba) const {
        if (y < frame().Top || y >= frame().Top + frame().Height) return;
        const auto* indices = indices_.data() + static_cast<std::size_t>(y - frame().Top) * width();
        const std::size_t left = static_cast<std::size_t>(frame().Left);
        for (std::size_t x = left; x < left + width() && x * 4 < rgba.size(); ++x) {
            const std::size_t index = indices[x - left];
            if (static_cast<int>(index) == transparent_) continue;
            const auto colour = index < colours_.size() ? colours_[index] : GifColorType{0, 0, 0};
            const std::array pixel = {colour.Red, colour.Green, colour.Blue, GifByteType{255}};
            std::copy(pixel.begin(), pixel.end(), rgba.begin() + static_cast<std::ptrdiff_t>(x * 4));
        }
    }

  private:
    static int read(GifFileType* gif, GifByteType* bytes, int size) {
        auto& reader = *static_cast<PictureReader*>(gif->UserData);
        return static_cast<int>(reader.read({bytes, static_cast<std::size_t>(size)}));
    }

    static void require(int result) {
        if (result == GIF_ERROR) giveUp();
    }

    GifRecordType nextRecord() {
        GifRecordType type = UNDEFINED_RECORD_TYPE;
        require(DGifGetRecordType(gif_, &type));
        if (type != IMAGE_DESC_RECORD_TYPE && type != EXTENSION_RECORD_TYPE) giveUp();
        return type;
    }

    void readExtension() {
        int code = 0;
        GifByteType* block = nullptr;
        require(DGifGetExtension(gif_, &code, &block));
        for (; block; require(DGifGetExtensionNext(gif_, &block))) {
            GraphicsControlBlock control;
            if (code == GRAPHICS_EXT_FUNC_CODE && DGifExtensionToGCB(block[0], block + 1, &control) == GIF_OK)
                transparent_ = control.TransparentColor;
        }
    }

    void readIndices() {
        indices_.resize(width() * static_cast<std::size_t>(frame().Height));
        if (!frame().Interlace) return readRows(0, 1);
        readRows(0, 8);
        readRows(4, 8);
        readRows(2, 4);
        readRows(1, 2);
    }

    void readRows(int first, int step) {
        for (int y = first; y < frame().Height; y += step)
            require(
                DGifGetLine(gif_, indices_.data() + static_cast<std::size_t>(y) * width(), frame().Width));
    }

    const GifImageDesc& frame() const { return gif_->Image; }
    std::size_t width() const { return static_cast<std::size_t>(frame().Width); }

    GifFileType* gif_;
    int transparent_ = NO_TRANSPARENT_COLOR;
    std::vector<GifColorType> colours_;
    std::vector<GifByteType> indices_;  // of the frame, one per pixel
};

}  // namespace

DecodedPixels readGIF(const PictureFile& file) {
    PictureReader reader(file);
    Decoder decoder(reader);
    UprightPicture picture({.size = decoder.screen(), .declared = {}});
    decoder.readFrame();
    std::vector<std::uint8_t> row;
    for (std::int64_t y = 0; y < decoder.screen().height; ++y) {
        row.assign(picture.rowSize(), 0);
        decoder.drawRow(static_cast<int>(y), row);
        picture.addRow(row);
    }
    return picture.finish();
}

}  // namespace quorvantis::decoder
