#include "imaging/DecodingBatch.h"

#include <CoreGraphics/CoreGraphics.h>
#include <ImageIO/ImageIO.h>
#include <algorithm>
#include <array>
#include <errno.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include "imaging/PixelHasher.h"
#include "platform/macos/AutoreleasePool.h"
#include "platform/macos/Owned.h"

namespace quorvantis {

using Clock = std::chrono::steady_clock;
using platform::Owned;

namespace {

using Pixels = std::vector<UInt8>;

struct Size {
    std::int64_t width;
    std::int64_t height;
};

std::size_t readAt(void* descriptor, void* buffer, off_t position, std::size_t count) {
    const int file = static_cast<const platform::Descriptor*>(descriptor)->get();
    std::size_t done = 0;
    while (done < count) {
        const ssize_t more = pread(file, static_cast<UInt8*>(buffer) + done, count - done,
                                   position + static_cast<off_t>(done));
        if (more < 0 && errno == EINTR) continue;
        if (more <= 0) break;
        done += static_cast<std::size_t>(more);
    }
    return done;
}

/// Gives Image I/O what it asks for of the file, which may be of any size. The file is not mapped, because a
/// mapped file that shrinks would crash the process. It must stay open.
Owned<CGDataProviderRef> contentOf(const platform::Descriptor& file) {
    static constexpr CGDataProviderDirectCallbacks callbacks = {.version = 0,
                                                                .getBytePointer = nullptr,
                                                                .releaseBytePointer = nullptr,
                                                                .getBytesAtPosition = readAt,
                                                                .releaseInfo = nullptr};
    struct stat status = {};
    if (fstat(file.get(), &status) != 0) return nullptr;
    void* const info = const_cast<platform::Descriptor*>(&file);
    return Owned<CGDataProviderRef>(CGDataProviderCreateDirect(info, status.st_size, &callbacks));
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

/// The full-size picture, upright. Image I/O applies the orientation only to "thumbnails", so this is one as
/// large as the picture, never an embedded preview.
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

/// The image's rows in sRGB, premultiplied by alpha; empty if the system cannot draw it.
std::optional<Pixels> drawn(CGImageRef image, std::size_t width, std::size_t height) {
    Pixels pixels(width * 4 * height);
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
    const platform::AutoreleasePool pool;
    const auto content = contentOf(file);
    if (!content) return std::nullopt;
    const Owned<CGImageSourceRef> source(CGImageSourceCreateWithDataProvider(content.get(), nullptr));
    if (!source) return std::nullopt;
    const auto declared = declaredSize(source.get());
    if (!declared) return std::nullopt;
    auto hash = decodedPixelHash(source.get(), *declared);
    if (!hash) return std::nullopt;
    return DecodedPixels{declared->width, declared->height, std::move(*hash)};
}

}  // namespace

struct DecodingBatch::Work {
    Clock::time_point deadline;
};

DecodingBatch::DecodingBatch(std::chrono::milliseconds timeout)
    : work_(new Work{.deadline = Clock::now() + timeout}) {}

DecodingBatch::~DecodingBatch() = default;

void DecodingBatch::start(const platform::Descriptor& file, Done done) {
    done(Clock::now() < work_->deadline ? decoded(file) : std::nullopt);
}

void DecodingBatch::finish() {}

}  // namespace quorvantis
