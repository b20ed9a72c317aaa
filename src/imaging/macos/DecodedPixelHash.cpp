#include "imaging/DecodedPixelHash.h"

#include <CoreGraphics/CoreGraphics.h>
#include <ImageIO/ImageIO.h>
#include <algorithm>
#include <array>
#include <errno.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include "imaging/PixelHasher.h"
#include "platform/macos/Owned.h"

namespace quorvantis {

using Clock = std::chrono::steady_clock;
using platform::Owned;

namespace {

using Bytes = std::vector<UInt8>;

struct Size {
    std::int64_t width;
    std::int64_t height;
};

/// The whole file, or what is there of it. Not mapped: a mapped file that shrinks would end the process.
Bytes contentOf(const platform::Descriptor& file) {
    struct stat status = {};
    fstat(file.get(), &status);
    Bytes content(static_cast<std::size_t>(std::max<off_t>(status.st_size, 0)));
    std::size_t size = 0;
    while (size < content.size()) {
        const ssize_t count =
            pread(file.get(), content.data() + size, content.size() - size, static_cast<off_t>(size));
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) break;
        size += static_cast<std::size_t>(count);
    }
    content.resize(size);
    return content;
}

Owned<CGImageSourceRef> sourceOver(const Bytes& content) {
    const Owned<CFDataRef> data(CFDataCreateWithBytesNoCopy(
        kCFAllocatorDefault, content.data(), static_cast<CFIndex>(content.size()), kCFAllocatorNull));
    if (!data) return nullptr;
    return Owned<CGImageSourceRef>(CGImageSourceCreateWithData(data.get(), nullptr));
}

std::optional<std::int64_t> integer(CFDictionaryRef properties, CFStringRef key) {
    const auto value = static_cast<CFTypeRef>(CFDictionaryGetValue(properties, key));
    if (!value || CFGetTypeID(value) != CFNumberGetTypeID()) return std::nullopt;
    std::int64_t number = 0;
    // False when the number has a fraction or does not fit.
    if (!CFNumberGetValue(static_cast<CFNumberRef>(value), kCFNumberSInt64Type, &number)) return std::nullopt;
    return number;
}

std::optional<Size> declaredSize(CGImageSourceRef source) {
    const Owned<CFDictionaryRef> properties(CGImageSourceCopyPropertiesAtIndex(source, 0, nullptr));
    if (!properties) return std::nullopt;
    const auto width = integer(properties.get(), kCGImagePropertyPixelWidth);
    const auto height = integer(properties.get(), kCGImagePropertyPixelHeight);
    if (!width || !height) return std::nullopt;
    return Size{*width, *height};
}

/// The picture in full size, upright: a "thumbnail" as large as the picture is the one form in which the
/// system applies the orientation. An embedded preview is never taken.
Owned<CGImageRef> uprightImage(CGImageSourceRef source, const Size& declared) {
    const std::int64_t longerSide = std::max(declared.width, declared.height);
    const Owned<CFNumberRef> size(CFNumberCreate(kCFAllocatorDefault, kCFNumberSInt64Type, &longerSide));
    std::array<const void*, 3> keys = {kCGImageSourceCreateThumbnailFromImageAlways,
                                       kCGImageSourceCreateThumbnailWithTransform,
                                       kCGImageSourceThumbnailMaxPixelSize};
    std::array<const void*, 3> values = {kCFBooleanTrue, kCFBooleanTrue, size.get()};
    const Owned<CFDictionaryRef> options(CFDictionaryCreate(kCFAllocatorDefault, keys.data(), values.data(),
                                                            keys.size(), &kCFTypeDictionaryKeyCallBacks,
                                                            &kCFTypeDictionaryValueCallBacks));
    return Owned<CGImageRef>(CGImageSourceCreateThumbnailAtIndex(source, 0, options.get()));
}

/// The image's rows in sRGB, premultiplied; nothing when the system cannot draw it.
std::optional<Bytes> drawn(CGImageRef image, std::size_t width, std::size_t height) {
    Bytes pixels(width * 4 * height);
    const Owned<CGColorSpaceRef> sRGB(CGColorSpaceCreateWithName(kCGColorSpaceSRGB));
    if (!sRGB) return std::nullopt;
    constexpr auto rgba = static_cast<std::uint32_t>(kCGImageAlphaPremultipliedLast) |
                          static_cast<std::uint32_t>(kCGBitmapByteOrder32Big);
    const Owned<CGContextRef> context(
        CGBitmapContextCreate(pixels.data(), width, height, 8, width * 4, sRGB.get(), rgba));
    if (!context) return std::nullopt;
    CGContextSetInterpolationQuality(context.get(), kCGInterpolationNone);
    const auto all = CGRectMake(0, 0, static_cast<CGFloat>(width), static_cast<CGFloat>(height));
    CGContextDrawImage(context.get(), all, image);
    return pixels;
}

std::optional<std::string> decodedPixelHash(CGImageSourceRef source, const Size& declared) {
    if (!isWithinPixelBudget(declared.width, declared.height)) return std::nullopt;
    const auto image = uprightImage(source, declared);
    if (!image) return std::nullopt;
    const auto width = CGImageGetWidth(image.get());
    const auto height = CGImageGetHeight(image.get());
    const Size upright = {static_cast<std::int64_t>(width), static_cast<std::int64_t>(height)};
    if (!isWithinPixelBudget(upright.width, upright.height)) return std::nullopt;
    const auto pixels = drawn(image.get(), width, height);
    if (!pixels) return std::nullopt;
    PixelHasher hasher(upright.width, upright.height);
    hasher.update(std::as_bytes(std::span(*pixels)));
    return hasher.finish();
}

std::optional<DecodedPixels> decoded(const platform::Descriptor& file) {
    const Bytes content = contentOf(file);
    const auto source = sourceOver(content);
    if (!source) return std::nullopt;
    const auto declared = declaredSize(source.get());
    if (!declared) return std::nullopt;
    auto hash = decodedPixelHash(source.get(), *declared);
    if (!hash) return std::nullopt;
    return DecodedPixels{declared->width, declared->height, std::move(*hash)};
}

}  // namespace

struct DecodedPixelHash::Work {
    Clock::time_point deadline;
};

DecodedPixelHash::DecodedPixelHash(std::chrono::milliseconds patience)
    : work_(new Work{.deadline = Clock::now() + patience}) {}

DecodedPixelHash::~DecodedPixelHash() = default;

void DecodedPixelHash::start(const platform::Descriptor& file, Done done) {
    done(Clock::now() < work_->deadline ? decoded(file) : std::nullopt);
}

void DecodedPixelHash::finish() {}

}  // namespace quorvantis
