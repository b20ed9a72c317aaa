#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <libheif/heif.h>
#include <memory>
#include <vector>

#include "decoder/formats/Readers.h"
#include "decoder/picture/GiveUp.h"
#include "decoder/picture/PictureFile.h"
#include "decoder/picture/UprightPicture.h"
#include "imaging/DecodedPixels.h"
#include "imaging/PixelHasher.h"

namespace quorvantis::decoder {

namespace {

template <class T>
using Owned = std::unique_ptr<T, void (*)(T*)>;

void require(const heif_error& error) {
    if (error.code != heif_error_Ok) giveUp();
}

/// The file's primary image or, if it names none, its first: one that is not a part or thumbnail of another.
Owned<heif_image_handle> primaryImage(heif_context* context) {
    heif_item_id item = 0;
    heif_image_handle* handle = nullptr;
    if (heif_context_get_primary_image_handle(context, &handle).code != heif_error_Ok) {
        if (heif_context_get_list_of_top_level_image_IDs(context, &item, 1) < 1) giveUp();
        require(heif_context_get_image_handle(context, item, &handle));
    }
    return {handle, [](heif_image_handle* h) { heif_image_handle_release(h); }};
}

std::vector<std::uint8_t> profile(const heif_image_handle* handle) {
    std::vector<std::uint8_t> profile(heif_image_handle_get_raw_color_profile_size(handle));
    if (!profile.empty()) require(heif_image_handle_get_raw_color_profile(handle, profile.data()));
    return profile;
}

Size declaredSize(const heif_image_handle* handle) {
    return {heif_image_handle_get_ispe_width(handle), heif_image_handle_get_ispe_height(handle)};
}

/// The size is that of the decoded image, because libheif before 1.16 tells another when a rotation or
/// cropping stands before the declared size.
PictureHeader pictureHeader(const heif_image_handle* handle, const heif_image* image) {
    PictureHeader header;
    header.size = {heif_image_get_width(image, heif_channel_interleaved),
                   heif_image_get_height(image, heif_channel_interleaved)};
    header.declared = declaredSize(handle);
    header.premultiplied = heif_image_handle_is_premultiplied_alpha(handle) != 0;
    header.colours.profile = profile(handle);
    return header;
}

/// Decodes the image as RGBA of 8 or more bits per sample, with the file's rotation and cropping applied.
Owned<heif_image> decoded(const heif_image_handle* handle) {
    const Owned<heif_decoding_options> options(heif_decoding_options_alloc(), &heif_decoding_options_free);
    options->strict_decoding = 1;
    const bool isDeep = heif_image_handle_get_luma_bits_per_pixel(handle) > 8;
    heif_image* image = nullptr;
    require(heif_decode_image(handle, &image, heif_colorspace_RGB,
                              isDeep ? heif_chroma_interleaved_RRGGBBAA_LE : heif_chroma_interleaved_RGBA,
                              options.get()));
    return {image, [](heif_image* i) { heif_image_release(i); }};
}

void addRows(const heif_image* image, UprightPicture& picture, const Size& size) {
    int stride = 0;
    const auto* pixels = heif_image_get_plane_readonly(image, heif_channel_interleaved, &stride);
    const unsigned most = (1U << heif_image_get_bits_per_pixel_range(image, heif_channel_interleaved)) - 1;
    if (!pixels || most < 255) giveUp();
    std::vector<std::uint8_t> row(picture.rowSize());
    for (std::int64_t y = 0; y < size.height; ++y, pixels += stride) {
        if (most == 255) {
            picture.addRow({pixels, row.size()});
            continue;
        }
        for (std::size_t i = 0; i < row.size(); ++i) {
            const unsigned value = pixels[2 * i] | unsigned{pixels[2 * i + 1]} << 8;
            const unsigned deep = std::min(value, most);  // libheif makes opaque alpha 65535
            row[i] = static_cast<std::uint8_t>((deep * 255 + most / 2) / most);
        }
        picture.addRow(row);
    }
}

}  // namespace

DecodedPixels readHEIF(const PictureFile& file) {
    const PictureContent content(file);
    const Owned<heif_context> context(heif_context_alloc(), &heif_context_free);
    // A file can ask for more threads than there can be, and libheif would wait for them for ever.
    heif_context_set_max_decoding_threads(context.get(), 0);
    require(heif_context_read_from_memory_without_copy(context.get(), content.bytes().data(),
                                                       content.bytes().size(), nullptr));
    const auto handle = primaryImage(context.get());
    const auto declared = declaredSize(handle.get());
    if (!isWithinPixelBudget(declared.width, declared.height)) giveUp();
    const auto image = decoded(handle.get());
    const auto header = pictureHeader(handle.get(), image.get());
    UprightPicture picture(header);
    addRows(image.get(), picture, header.size);
    return picture.finish();
}

}  // namespace quorvantis::decoder
