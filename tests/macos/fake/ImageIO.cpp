#include <ImageIO/ImageIO.h>
#include <algorithm>
#include <utility>

#include "Objects.h"

using namespace fake;

namespace {

constexpr std::size_t pixelSize = 4;

struct Image : Object {
    std::size_t width = 0;
    std::size_t height = 0;
    std::string pixels;  // RGBA, not premultiplied

    const char* at(std::size_t x, std::size_t y) const { return pixels.data() + (y * width + x) * pixelSize; }
};

/// A picture of the only format that these frameworks know: "FAKE <width> <height> <orientation>", a line
/// feed, and the pixels. The sizes stand in its properties as they are written; a size of 0 is left out.
struct Source : Object {
    double width = 0;
    double height = 0;
    int orientation = 1;
    Image stored = {};
};

struct Space : Object {};

struct Context : Object {
    unsigned char* pixels = nullptr;
    std::size_t width = 0;
    std::size_t height = 0;
    bool interpolates = true;
    bool isDrawn = false;
};

void put(Dictionary& properties, CFStringRef key, double value) {
    if (value == 0) return;
    auto* const number = new Number;
    number->value = value;
    count(1);
    properties.values[text(key)] = number;
}

/// Orientations 1 (upright) and 6 (to be turned clockwise by a quarter).
Image* upright(const Source& source) {
    auto* const image = new Image(source.stored);
    if (source.orientation == 1) return image;
    require(source.orientation == 6, "orientations 1 and 6");
    std::swap(image->width, image->height);
    image->pixels.clear();
    for (std::size_t y = 0; y < image->height; ++y)
        for (std::size_t x = 0; x < image->width; ++x)
            image->pixels.append(source.stored.at(y, source.stored.height - 1 - x), pixelSize);
    return image;
}

bool isTrue(CFDictionaryRef options, CFStringRef key) {
    return CFDictionaryGetValue(options, key) == static_cast<const void*>(kCFBooleanTrue);
}

}  // namespace

const CFStringRef kCGColorSpaceSRGB = constant("kCGColorSpaceSRGB");
const CFStringRef kCGImagePropertyPixelWidth = constant("PixelWidth");
const CFStringRef kCGImagePropertyPixelHeight = constant("PixelHeight");
const CFStringRef kCGImageSourceCreateThumbnailFromImageAlways = constant("FromImageAlways");
const CFStringRef kCGImageSourceCreateThumbnailWithTransform = constant("WithTransform");
const CFStringRef kCGImageSourceThumbnailMaxPixelSize = constant("MaxPixelSize");

CGImageSourceRef CGImageSourceCreateWithData(CFDataRef data, CFDictionaryRef options) {
    requirePool();
    require(!options, "sources without options");
    const auto& bytes = object<Data>(data).bytes;
    Source header;
    int length = 0;
    if (std::sscanf(bytes.c_str(), "FAKE %lf %lf %d%n", &header.width, &header.height, &header.orientation,
                    &length) < 3)
        return nullptr;
    header.stored.width = static_cast<std::size_t>(std::max(header.width, 0.0));
    header.stored.height = static_cast<std::size_t>(std::max(header.height, 0.0));
    header.stored.pixels = bytes.substr(static_cast<std::size_t>(length) + 1);
    return created<CGImageSourceRef>(new Source(header));
}

CFDictionaryRef CGImageSourceCopyPropertiesAtIndex(CGImageSourceRef reference, std::size_t index,
                                                   CFDictionaryRef options) {
    requirePool();
    require(index == 0 && !options, "properties of the first image, without options");
    const auto& source = object<Source>(reference);
    auto* const properties = new Dictionary;
    put(*properties, kCGImagePropertyPixelWidth, source.width);
    put(*properties, kCGImagePropertyPixelHeight, source.height);
    return created<CFDictionaryRef>(properties);
}

CGImageRef CGImageSourceCreateThumbnailAtIndex(CGImageSourceRef reference, std::size_t index,
                                               CFDictionaryRef options) {
    requirePool();
    const auto& source = object<Source>(reference);
    require(source.width * source.height <= 60e6, "the budget comes first");
    require(index == 0 && object<Dictionary>(options).values.size() == 3 &&
                isTrue(options, kCGImageSourceCreateThumbnailFromImageAlways) &&
                isTrue(options, kCGImageSourceCreateThumbnailWithTransform),
            "the first image, whole and upright");
    const auto* const longest = CFDictionaryGetValue(options, kCGImageSourceThumbnailMaxPixelSize);
    require(object<Number>(longest).value == std::max(source.width, source.height), "the full size");
    if (source.stored.pixels.size() < source.stored.width * source.stored.height * pixelSize) return nullptr;
    return created<CGImageRef>(upright(source));
}

std::size_t CGImageGetWidth(CGImageRef image) {
    return object<Image>(image).width;
}

std::size_t CGImageGetHeight(CGImageRef image) {
    return object<Image>(image).height;
}

CGColorSpaceRef CGColorSpaceCreateWithName(CFStringRef name) {
    require(name == kCGColorSpaceSRGB, "sRGB");
    return created<CGColorSpaceRef>(new Space);
}

CGContextRef CGBitmapContextCreate(void* pixels, std::size_t width, std::size_t height, std::size_t bits,
                                   std::size_t bytesPerRow, CGColorSpaceRef space, std::uint32_t info) {
    object<Space>(space);
    require(bits == 8 && bytesPerRow == width * pixelSize && info == 0x4001,
            "RGBA of 8 bits, premultiplied, no padding");
    auto* const bytes = static_cast<unsigned char*>(pixels);
    require(std::all_of(bytes, bytes + bytesPerRow * height, [](auto byte) { return byte == 0; }),
            "zeros at first");
    auto* const context = new Context;
    context->pixels = bytes;
    context->width = width;
    context->height = height;
    return created<CGContextRef>(context);
}

void CGContextSetInterpolationQuality(CGContextRef context, CGInterpolationQuality quality) {
    object<Context>(context).interpolates = quality != kCGInterpolationNone;
}

void CGContextDrawImage(CGContextRef reference, CGRect where, CGImageRef drawn) {
    requirePool();
    auto& context = object<Context>(reference);
    const auto& image = object<Image>(drawn);
    require(!context.interpolates && !std::exchange(context.isDrawn, true),
            "one drawing, without interpolation");
    require(where.origin.x == 0 && where.origin.y == 0 &&
                where.size.width == static_cast<double>(image.width) &&
                where.size.height == static_cast<double>(image.height) && context.width == image.width &&
                context.height == image.height,
            "the whole picture, not scaled");
    for (std::size_t i = 0; i < image.width * image.height * pixelSize; ++i) {
        const auto value = static_cast<unsigned char>(image.pixels[i]);
        const auto alpha = static_cast<unsigned char>(image.pixels[i | 3]);
        context.pixels[i] = static_cast<unsigned char>((i & 3) == 3 ? alpha : (value * alpha + 127) / 255);
    }
}
