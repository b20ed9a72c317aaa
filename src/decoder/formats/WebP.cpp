#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>
#include <webp/decode.h>
#include <webp/demux.h>

#include "decoder/formats/Readers.h"
#include "decoder/picture/GiveUp.h"
#include "decoder/picture/Orientation.h"
#include "decoder/picture/PictureFile.h"
#include "decoder/picture/UprightPicture.h"
#include "imaging/DecodedPixels.h"

namespace quorvantis::decoder {

namespace {

class Decoder {
  public:
    explicit Decoder(const PictureFile& file)
        : content_(file),
          data_({content_.bytes().data(), content_.bytes().size()}),
          demuxer_(WebPDemux(&data_), &WebPDemuxDelete) {
        if (!demuxer_ || !WebPDemuxGetFrame(demuxer_.get(), 1, &frame_) || !frame_.complete) giveUp();
    }
    Decoder(const Decoder&) = delete;
    Decoder& operator=(const Decoder&) = delete;
    ~Decoder() { WebPDemuxReleaseIterator(&frame_); }

    PictureHeader header() const {
        PictureHeader header;
        header.size = {get(WEBP_FF_CANVAS_WIDTH), get(WEBP_FF_CANVAS_HEIGHT)};
        header.colours.profile = chunk("ICCP");
        header.orientation = exifOrientation(chunk("EXIF")).value_or(upright);
        return header;
    }

    /// Decodes the first frame onto a transparent RGBA canvas.
    std::vector<std::uint8_t> decode(std::size_t rowSize) const {
        std::vector<std::uint8_t> canvas(rowSize * get(WEBP_FF_CANVAS_HEIGHT));
        const auto start = static_cast<std::size_t>(frame_.y_offset) * rowSize +
                           static_cast<std::size_t>(frame_.x_offset) * 4;
        WebPDecoderConfig config;
        if (!WebPInitDecoderConfig(&config)) giveUp();
        config.output.colorspace = MODE_RGBA;
        config.output.is_external_memory = 1;
        config.output.u.RGBA = {canvas.data() + start, static_cast<int>(rowSize), canvas.size() - start};
        if (WebPDecode(frame_.fragment.bytes, frame_.fragment.size, &config) != VP8_STATUS_OK) giveUp();
        return canvas;
    }

  private:
    std::uint32_t get(WebPFormatFeature feature) const { return WebPDemuxGetI(demuxer_.get(), feature); }

    std::vector<std::uint8_t> chunk(const char* name) const {
        WebPChunkIterator chunk;
        if (!WebPDemuxGetChunk(demuxer_.get(), name, 1, &chunk)) return {};
        std::vector<std::uint8_t> bytes(chunk.chunk.bytes, chunk.chunk.bytes + chunk.chunk.size);
        WebPDemuxReleaseChunkIterator(&chunk);
        return bytes;
    }

    PictureContent content_;
    WebPData data_;
    std::unique_ptr<WebPDemuxer, decltype(&WebPDemuxDelete)> demuxer_;
    WebPIterator frame_ = {};
};

}  // namespace

DecodedPixels readWebP(const PictureFile& file) {
    const Decoder decoder(file);
    UprightPicture picture(decoder.header());
    picture.addRows(decoder.decode(picture.rowSize()));
    return picture.finish();
}

}  // namespace quorvantis::decoder
