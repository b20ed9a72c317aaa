#include "TestPictures.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <jpeglib.h>
#include <libheif/heif.h>
#include <memory>
#include <png.h>
#include <vector>
#include <webp/decode.h>

namespace quorvantis::bench {

namespace {

using File = std::unique_ptr<FILE, int (*)(FILE*)>;

File openFile(const std::string& path, const char* mode) {
    File file(std::fopen(path.c_str(), mode), &std::fclose);
    if (!file) std::exit(1);
    return file;
}

std::vector<std::uint8_t> photographRow(int width, int y) {
    static std::uint32_t random = 1;
    std::vector<std::uint8_t> row;
    for (int x = 0; x < width; ++x)
        for (const double scale : {310.0, 97.0, 550.0}) {
            random = random * 1664525 + 1013904223;
            const double grain = static_cast<double>(random >> 24) / 16 - 8;
            row.push_back(static_cast<std::uint8_t>(127 + 90 * std::sin(x / scale + y / 170.0) + grain));
        }
    return row;
}

}  // namespace

void writeJPEG(const std::string& path, int width, int height) {
    const auto file = openFile(path, "wb");
    jpeg_compress_struct jpeg = {};
    jpeg_error_mgr errors;
    jpeg.err = jpeg_std_error(&errors);
    jpeg_create_compress(&jpeg);
    jpeg_stdio_dest(&jpeg, file.get());
    jpeg.image_width = static_cast<JDIMENSION>(width);
    jpeg.image_height = static_cast<JDIMENSION>(height);
    jpeg.input_components = 3;
    jpeg.in_color_space = JCS_RGB;
    jpeg_set_defaults(&jpeg);
    jpeg_set_quality(&jpeg, 90, TRUE);
    jpeg_start_compress(&jpeg, TRUE);
    for (int y = 0; y < height; ++y) {
        auto row = photographRow(width, y);
        auto* rows = row.data();
        jpeg_write_scanlines(&jpeg, &rows, 1);
    }
    jpeg_finish_compress(&jpeg);
    jpeg_destroy_compress(&jpeg);
}

void writePNG(const std::string& path, int width, int height) {
    const auto file = openFile(path, "wb");
    auto* png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    auto* info = png_create_info_struct(png);
    png_init_io(png, file.get());
    png_set_IHDR(png, info, static_cast<png_uint_32>(width), static_cast<png_uint_32>(height), 8,
                 PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_BASE, PNG_FILTER_TYPE_BASE);
    png_write_info(png, info);
    for (int y = 0; y < height; ++y) png_write_row(png, photographRow(width, y).data());
    png_write_end(png, nullptr);
    png_destroy_write_struct(&png, &info);
}

namespace {

void decodeJPEG(const std::string& path) {
    const auto file = openFile(path, "rb");
    jpeg_decompress_struct jpeg = {};
    jpeg_error_mgr errors;
    jpeg.err = jpeg_std_error(&errors);
    jpeg_create_decompress(&jpeg);
    jpeg_stdio_src(&jpeg, file.get());
    jpeg_read_header(&jpeg, TRUE);
    jpeg_start_decompress(&jpeg);
    std::vector<std::uint8_t> row(std::size_t{jpeg.output_width} * 3);
    auto* rows = row.data();
    while (jpeg.output_scanline < jpeg.output_height) jpeg_read_scanlines(&jpeg, &rows, 1);
    jpeg_finish_decompress(&jpeg);
    jpeg_destroy_decompress(&jpeg);
}

void decodePNG(const std::string& path) {
    const auto file = openFile(path, "rb");
    auto* png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    auto* info = png_create_info_struct(png);
    png_init_io(png, file.get());
    png_read_info(png, info);
    std::vector<std::uint8_t> row(png_get_rowbytes(png, info));
    for (png_uint_32 y = 0; y < png_get_image_height(png, info); ++y) png_read_row(png, row.data(), nullptr);
    png_read_end(png, nullptr);
    png_destroy_read_struct(&png, &info, nullptr);
}

std::vector<std::uint8_t> content(const std::string& path) {
    std::vector<std::uint8_t> bytes(std::filesystem::file_size(path));
    if (std::fread(bytes.data(), 1, bytes.size(), openFile(path, "rb").get()) != bytes.size()) std::exit(1);
    return bytes;
}

void decodeWebP(const std::string& path) {
    const auto bytes = content(path);
    int width = 0, height = 0;
    WebPFree(WebPDecodeRGBA(bytes.data(), bytes.size(), &width, &height));
}

void decodeHEIF(const std::string& path) {
    auto* context = heif_context_alloc();
    heif_image_handle* handle = nullptr;
    heif_image* image = nullptr;
    heif_context_read_from_file(context, path.c_str(), nullptr);
    heif_context_get_primary_image_handle(context, &handle);
    heif_decode_image(handle, &image, heif_colorspace_RGB, heif_chroma_interleaved_RGBA, nullptr);
    heif_image_release(image);
    heif_image_handle_release(handle);
    heif_context_free(context);
}

}  // namespace

void decode(const std::string& path) {
    if (path.ends_with(".jpg")) return decodeJPEG(path);
    if (path.ends_with(".png")) return decodePNG(path);
    if (path.ends_with(".webp")) return decodeWebP(path);
    if (path.ends_with(".heic") || path.ends_with(".avif")) return decodeHEIF(path);
    static_cast<void>(content(path));
}

}  // namespace quorvantis::bench
