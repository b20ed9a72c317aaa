#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <openjpeg.h>
#include <span>
#include <vector>

#include "decoder/formats/Readers.h"
#include "decoder/picture/GiveUp.h"
#include "decoder/picture/Layout.h"
#include "decoder/picture/PictureFile.h"
#include "decoder/picture/UprightPicture.h"
#include "imaging/DecodedPixels.h"
#include "imaging/PixelHasher.h"

namespace quorvantis::decoder {

namespace {

// Four inks and alpha. The codec keeps all components in memory, of whatever size they claim to be.
constexpr std::uint32_t maximumComponents = 5;

/// The input callbacks of openjp2.
struct InputStream {
    const PictureFile& file;
    std::uint64_t at = 0;

    static OPJ_SIZE_T read(void* bytes, OPJ_SIZE_T size, void* user) {
        auto& input = *static_cast<InputStream*>(user);
        const auto count = input.file.readUpTo(input.at, {static_cast<std::uint8_t*>(bytes), size});
        input.at += count;
        return count == 0 ? static_cast<OPJ_SIZE_T>(-1) : count;
    }
    static OPJ_OFF_T skip(OPJ_OFF_T count, void* user) {
        static_cast<InputStream*>(user)->at += static_cast<std::uint64_t>(std::max<OPJ_OFF_T>(count, 0));
        return count;
    }
    static OPJ_BOOL seek(OPJ_OFF_T at, void* user) {
        static_cast<InputStream*>(user)->at = static_cast<std::uint64_t>(std::max<OPJ_OFF_T>(at, 0));
        return OPJ_TRUE;
    }
};

/// The samples of one component, scaled to 8 bits.
class Component {
  public:
    explicit Component(const opj_image_comp_t& component) : component_(component) {
        if (!component.data || component.w == 0 || component.h == 0 || component.prec < 1 ||
            component.prec > 31)
            giveUp();
    }

    /// The sample for a pixel of the picture. The component may be subsampled.
    std::uint8_t at(std::size_t x, std::size_t y) const {
        x = std::min<std::size_t>(x / component_.dx, component_.w - 1);
        y = std::min<std::size_t>(y / component_.dy, component_.h - 1);
        const std::int64_t maximum = (std::int64_t{1} << component_.prec) - 1;
        const std::int64_t minimum = component_.sgnd ? -(maximum + 1) / 2 : 0;
        const auto value =
            std::clamp(component_.data[y * component_.w + x] - minimum, std::int64_t{0}, maximum);
        return static_cast<std::uint8_t>((value * 255 + maximum / 2) / maximum);
    }

  private:
    const opj_image_comp_t& component_;
};

std::uint8_t rounded(double value) {
    return static_cast<std::uint8_t>(std::clamp(std::lround(value), 0L, 255L));
}

/// Converts luma and chroma to red, green and blue (ISO/IEC 15444-1, annex G, without the level shift).
void convertYCC(std::uint8_t* pixel) {
    const double luma = pixel[0];
    const double blue = pixel[1] - 128.0;
    const double red = pixel[2] - 128.0;
    pixel[0] = rounded(luma + 1.402 * red);
    pixel[1] = rounded(luma - 0.344136 * blue - 0.714136 * red);
    pixel[2] = rounded(luma + 1.772 * blue);
}

class Decoder {
  public:
    explicit Decoder(const PictureFile& file)
        : input_({file}),
          codec_(opj_create_decompress(isCodeStream(file) ? OPJ_CODEC_J2K : OPJ_CODEC_JP2),
                 &opj_destroy_codec),
          stream_(opj_stream_default_create(OPJ_TRUE), &opj_stream_destroy),
          image_(nullptr, &opj_image_destroy) {
        opj_stream_set_user_data(stream_.get(), &input_, nullptr);
        opj_stream_set_user_data_length(stream_.get(), file.size());
        opj_stream_set_read_function(stream_.get(), InputStream::read);
        opj_stream_set_skip_function(stream_.get(), InputStream::skip);
        opj_stream_set_seek_function(stream_.get(), InputStream::seek);
        opj_dparameters_t parameters;
        opj_set_default_decoder_parameters(&parameters);
        opj_image_t* image = nullptr;
        if (!opj_setup_decoder(codec_.get(), &parameters) ||
            !opj_read_header(stream_.get(), codec_.get(), &image))
            giveUp();
        image_.reset(image);
        if (image->numcomps < 1 || image->numcomps > maximumComponents) giveUp();
    }

    void decode() {
        if (!opj_decode(codec_.get(), stream_.get(), image_.get()) ||
            !opj_end_decompress(codec_.get(), stream_.get()))
            giveUp();
        for (std::uint32_t i = 0; i < image_->numcomps; ++i) components_.emplace_back(image_->comps[i]);
    }

    Size size() const {
        return {std::int64_t{image_->x1} - image_->x0, std::int64_t{image_->y1} - image_->y0};
    }

    PictureHeader header() const {
        PictureHeader header;
        header.size = size();
        header.layout = layout();
        header.premultiplied =
            hasAlpha(header.layout) && image_->comps[samplesPerPixel(header.layout) - 1].alpha == 2;
        if (image_->icc_profile_len > 0)
            header.colours.profile = {image_->icc_profile_buf,
                                      image_->icc_profile_buf + image_->icc_profile_len};
        return header;
    }

    void readRow(std::size_t y, std::span<std::uint8_t> row) const {
        const std::size_t samples = samplesPerPixel(layout());
        for (std::size_t i = 0; i < row.size(); i += samples) {
            for (std::size_t c = 0; c < samples; ++c) row[i + c] = components_[c].at(i / samples, y);
            if (image_->color_space == OPJ_CLRSPC_SYCC && samples >= 3) convertYCC(&row[i]);
        }
    }

  private:
    static bool isCodeStream(const PictureFile& file) {
        std::uint8_t first = 0;
        file.read(0, {&first, 1});
        return first == 0xFF;
    }

    Layout layout() const {
        const auto count = components_.size();
        if (count >= 4 && image_->color_space == OPJ_CLRSPC_CMYK) return Layout::cmyk;
        // Many writers do not say that the last of four or two is alpha.
        if (count >= 4) return Layout::rgba;
        if (count == 3) return Layout::rgb;
        return count == 2 ? Layout::grayAlpha : Layout::gray;
    }

    InputStream input_;
    std::unique_ptr<opj_codec_t, decltype(&opj_destroy_codec)> codec_;
    std::unique_ptr<opj_stream_t, decltype(&opj_stream_destroy)> stream_;
    std::unique_ptr<opj_image_t, decltype(&opj_image_destroy)> image_;
    std::vector<Component> components_;
};

}  // namespace

DecodedPixels readJPEG2000(const PictureFile& file) {
    Decoder decoder(file);
    if (!isWithinPixelBudget(decoder.size().width, decoder.size().height)) giveUp();
    decoder.decode();
    UprightPicture picture(decoder.header());
    std::vector<std::uint8_t> row(picture.rowSize());
    for (std::int64_t y = 0; y < decoder.size().height; ++y) {
        decoder.readRow(static_cast<std::size_t>(y), row);
        picture.addRow(row);
    }
    return picture.finish();
}

}  // namespace quorvantis::decoder
