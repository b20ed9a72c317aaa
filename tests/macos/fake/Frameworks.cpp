#include "Frameworks.h"

#include <ImageIO/ImageIO.h>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <utf8proc.h>
#include <utility>

#include "platform/macos/AutoreleasePool.h"
#include "platform/macos/Owned.h"
#include "support/UTF8.h"

namespace {

long live = 0;
std::intptr_t pools = 0;

void require(bool holds, const char* rule) {
    if (holds) return;
    std::fprintf(stderr, "Misuse of a framework: %s\n", rule);
    std::abort();
}

void requirePool() {
    require(pools > 0, "an autorelease pool");
}

struct Object {
    Object() { ++live; }
    virtual ~Object() { --live; }
    long references = 1;
};

template <class T>
struct Holder : Object {
    T value = {};
};

using Bytes = std::basic_string<UInt8>;
using Dictionary = std::map<std::string, quorvantis::platform::Owned<CFTypeRef>>;

struct Image {
    std::size_t width = 0, height = 0;
    Bytes pixels = {};  // RGBA, not premultiplied
};

/// A picture of the only format that these frameworks know: "FAKE <width> <height> <orientation>", a line
/// feed, and the pixels. The sizes stand in its properties as they are written; a size of 0 is left out.
struct Source {
    double width = 0, height = 0;
    int orientation = 1;
    Bytes pixels = {};
};

struct Context {
    UInt8* pixels;
    std::size_t width, height;
    bool interpolates = true;
};

/// A reference to a new object, which its receiver has to release.
template <class Reference, class T>
Reference created(T value) {
    auto* const made = new Holder<T>;
    made->value = std::move(value);
    return reinterpret_cast<Reference>(static_cast<Object*>(made));
}

Object& anyObject(CFTypeRef reference) {
    require(reference != nullptr, "no null references");
    return *static_cast<Object*>(const_cast<void*>(reference));
}

/// What the object holds, which must be of the type.
template <class T>
T& object(CFTypeRef reference) {
    auto* const found = dynamic_cast<Holder<T>*>(&anyObject(reference));
    require(found != nullptr, "a reference of the right type");
    return found->value;
}

const std::string& text(CFTypeRef string) {
    return object<std::string>(string);
}

CFStringRef constant(const char* text) {
    --live;
    return created<CFStringRef>(std::string(text));
}

struct {
    const void* self = nullptr;
    CFNotificationCallback callback = nullptr;
    std::string name = {};
    bool hasNews = false;
} observer;
std::string posted;
Object centre;

/// Orientations 1 (upright) and 6 (to be turned clockwise by a quarter).
Image upright(const Source& source) {
    const Image stored = {static_cast<std::size_t>(source.width), static_cast<std::size_t>(source.height),
                          source.pixels};
    if (source.orientation == 1) return stored;
    require(source.orientation == 6, "orientations 1 and 6");
    Image image = {stored.height, stored.width};
    for (std::size_t y = 0; y < image.height; ++y)
        for (std::size_t x = 0; x < image.width; ++x)
            image.pixels += stored.pixels.substr(((stored.height - 1 - x) * stored.width + y) * 4, 4);
    return image;
}

}  // namespace

long fake::liveObjects() {
    return live + pools;
}

std::string fake::takePosted() {
    return std::exchange(posted, {});
}

// ---- Core Foundation
// -----------------------------------------------------------------------------------------------

struct CFDictionaryKeyCallBacks {};
struct CFDictionaryValueCallBacks {};
static Object yes;

const CFAllocatorRef kCFAllocatorDefault = nullptr;
const CFBooleanRef kCFBooleanTrue = reinterpret_cast<CFBooleanRef>(&yes);
const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks = {};
const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks = {};
const CFRunLoopMode kCFRunLoopDefaultMode = constant("kCFRunLoopDefaultMode");

void* objc_autoreleasePoolPush() {
    return reinterpret_cast<void*>(++pools);
}

void objc_autoreleasePoolPop(void* pool) {
    require(pool == reinterpret_cast<void*>(pools--), "the innermost pool ends first");
}

void CFRelease(CFTypeRef reference) {
    auto& released = anyObject(reference);
    if (--released.references == 0) delete &released;
}

CFTypeID CFNumberGetTypeID() {
    return 1;
}

CFTypeID CFGetTypeID(CFTypeRef reference) {
    return dynamic_cast<Holder<double>*>(&anyObject(reference)) ? CFNumberGetTypeID() : 0;
}

Boolean CFEqual(CFTypeRef one, CFTypeRef other) {
    return text(one) == text(other);
}

CFNumberRef CFNumberCreate(CFAllocatorRef, CFNumberType type, const void* value) {
    require(type == kCFNumberSInt64Type, "numbers of 64 bits");
    return created<CFNumberRef>(static_cast<double>(*static_cast<const std::int64_t*>(value)));
}

Boolean CFNumberGetValue(CFNumberRef reference, CFNumberType type, void* value) {
    require(type == kCFNumberSInt64Type, "numbers of 64 bits");
    const auto whole = static_cast<std::int64_t>(object<double>(reference));
    *static_cast<std::int64_t*>(value) = whole;
    return static_cast<double>(whole) == object<double>(reference);
}

CFStringRef CFStringCreateWithBytes(CFAllocatorRef, const UInt8* bytes, CFIndex count,
                                    CFStringEncoding encoding, Boolean) {
    require(encoding == kCFStringEncodingUTF8, "UTF-8");
    const std::string text(bytes, bytes + count);
    return quorvantis::isValidUTF8(text) ? created<CFStringRef>(text) : nullptr;
}

CFMutableStringRef CFStringCreateMutableCopy(CFAllocatorRef, CFIndex, CFStringRef original) {
    return created<CFMutableStringRef>(text(original));
}

void CFStringNormalize(CFMutableStringRef string, CFStringNormalizationForm form) {
    require(form == kCFStringNormalizationFormD, "canonical decomposition");
    auto& text = object<std::string>(string);
    auto* const decomposed = utf8proc_NFD(reinterpret_cast<const utf8proc_uint8_t*>(text.c_str()));
    text = reinterpret_cast<const char*>(decomposed);
    std::free(decomposed);
}

CFDictionaryRef CFDictionaryCreate(CFAllocatorRef, const void** keys, const void** values, CFIndex count,
                                   const CFDictionaryKeyCallBacks* ofKeys,
                                   const CFDictionaryValueCallBacks* ofValues) {
    require(ofKeys == &kCFTypeDictionaryKeyCallBacks && ofValues == &kCFTypeDictionaryValueCallBacks,
            "dictionaries that own what they hold");
    Dictionary dictionary;
    for (CFIndex i = 0; i < count; ++i) {
        ++anyObject(values[i]).references;
        dictionary[text(keys[i])].reset(values[i]);
    }
    return created<CFDictionaryRef>(std::move(dictionary));
}

const void* CFDictionaryGetValue(CFDictionaryRef reference, const void* key) {
    return object<Dictionary>(reference)[text(key)].get();
}

CFNotificationCenterRef CFNotificationCenterGetDistributedCenter() {
    requirePool();
    return reinterpret_cast<CFNotificationCenterRef>(&centre);
}

void CFNotificationCenterPostNotificationWithOptions(CFNotificationCenterRef, CFNotificationName name,
                                                     const void* object, CFDictionaryRef userInfo,
                                                     CFOptionFlags options) {
    require(!userInfo, "no user information");
    posted += text(name) + ' ' + text(object) + ' ' + std::to_string(options) + '\n';
    observer.hasNews = observer.name == text(name);
}

void CFNotificationCenterAddObserver(CFNotificationCenterRef, const void* self,
                                     CFNotificationCallback callback, CFStringRef name, const void*,
                                     CFNotificationSuspensionBehavior behavior) {
    require(behavior == CFNotificationSuspensionBehaviorDeliverImmediately, "delivery at once");
    observer = {.self = self, .callback = callback, .name = text(name)};
}

void CFNotificationCenterRemoveEveryObserver(CFNotificationCenterRef, const void* self) {
    require(self == observer.self, "the observer itself");
    observer = {};
}

CFRunLoopRunResult CFRunLoopRunInMode(CFRunLoopMode mode, CFTimeInterval seconds, Boolean) {
    requirePool();
    require(mode == kCFRunLoopDefaultMode && seconds == 0, "only what has arrived");
    if (!std::exchange(observer.hasNews, false)) return kCFRunLoopRunTimedOut;
    observer.callback(nullptr, const_cast<void*>(observer.self), nullptr, nullptr, nullptr);
    return kCFRunLoopRunHandledSource;
}

// ---- Core Graphics, Image I/O
// --------------------------------------------------------------------------------------

const CFStringRef kCGColorSpaceSRGB = constant("kCGColorSpaceSRGB");
const CFStringRef kCGImagePropertyPixelWidth = constant("PixelWidth");
const CFStringRef kCGImagePropertyPixelHeight = constant("PixelHeight");
const CFStringRef kCGImageSourceCreateThumbnailFromImageAlways = constant("FromImageAlways");
const CFStringRef kCGImageSourceCreateThumbnailWithTransform = constant("WithTransform");
const CFStringRef kCGImageSourceThumbnailMaxPixelSize = constant("MaxPixelSize");

CGDataProviderRef CGDataProviderCreateDirect(void* info, off_t size,
                                             const CGDataProviderDirectCallbacks* callbacks) {
    require(callbacks->version == 0 && !callbacks->getBytePointer, "a provider that reads");
    Bytes bytes(static_cast<std::size_t>(size), 0);
    const auto half = bytes.size() / 2;
    const auto read = callbacks->getBytesAtPosition;
    read(info, &bytes[half], static_cast<off_t>(half), bytes.size() - half);
    read(info, &bytes[0], 0, half);
    return created<CGDataProviderRef>(std::move(bytes));
}

CGImageSourceRef CGImageSourceCreateWithDataProvider(CGDataProviderRef data, CFDictionaryRef options) {
    requirePool();
    require(!options, "sources without options");
    const auto& bytes = object<Bytes>(data);
    Source source;
    int length = 0;
    if (std::sscanf(reinterpret_cast<const char*>(bytes.c_str()), "FAKE %lf %lf %d%n", &source.width,
                    &source.height, &source.orientation, &length) < 3)
        return nullptr;
    source.pixels = bytes.substr(static_cast<std::size_t>(length) + 1);
    return created<CGImageSourceRef>(std::move(source));
}

CFDictionaryRef CGImageSourceCopyPropertiesAtIndex(CGImageSourceRef reference, std::size_t index,
                                                   CFDictionaryRef options) {
    requirePool();
    require(index == 0 && !options, "properties of the first image, without options");
    Dictionary properties;
    const auto& [width, height, orientation, pixels] = object<Source>(reference);
    if (width != 0) properties[text(kCGImagePropertyPixelWidth)].reset(created<CFTypeRef>(width));
    if (height != 0) properties[text(kCGImagePropertyPixelHeight)].reset(created<CFTypeRef>(height));
    return created<CFDictionaryRef>(std::move(properties));
}

CGImageRef CGImageSourceCreateThumbnailAtIndex(CGImageSourceRef reference, std::size_t index,
                                               CFDictionaryRef options) {
    requirePool();
    const auto& source = object<Source>(reference);
    require(source.width * source.height <= 60e6, "the budget comes first");
    require(
        index == 0 &&
            CFDictionaryGetValue(options, kCGImageSourceCreateThumbnailFromImageAlways) == kCFBooleanTrue &&
            CFDictionaryGetValue(options, kCGImageSourceCreateThumbnailWithTransform) == kCFBooleanTrue,
        "the first image, whole and upright");
    const auto* const longest = CFDictionaryGetValue(options, kCGImageSourceThumbnailMaxPixelSize);
    require(object<double>(longest) == std::max(source.width, source.height), "the full size");
    if (static_cast<double>(source.pixels.size()) < source.width * source.height * 4) return nullptr;
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
    return created<CGColorSpaceRef>(text(name));
}

CGContextRef CGBitmapContextCreate(void* pixels, std::size_t width, std::size_t height, std::size_t bits,
                                   std::size_t bytesPerRow, CGColorSpaceRef space, std::uint32_t info) {
    require(text(space) == "kCGColorSpaceSRGB" && bits == 8 && bytesPerRow == width * 4 && info == 0x4001,
            "RGBA of 8 bits, premultiplied, no padding");
    auto* const bytes = static_cast<UInt8*>(pixels);
    require(Bytes(bytes, bytesPerRow * height) == Bytes(bytesPerRow * height, 0), "zeros at first");
    return created<CGContextRef>(Context{bytes, width, height});
}

void CGContextSetInterpolationQuality(CGContextRef context, CGInterpolationQuality quality) {
    object<Context>(context).interpolates = quality != kCGInterpolationNone;
}

void CGContextDrawImage(CGContextRef reference, CGRect where, CGImageRef drawn) {
    requirePool();
    const auto& context = object<Context>(reference);
    const auto& image = object<Image>(drawn);
    const auto width = static_cast<double>(image.width), height = static_cast<double>(image.height);
    require(!context.interpolates, "no interpolation");
    require(where.origin.x == 0 && where.origin.y == 0 && where.size.width == width &&
                where.size.height == height && context.width == image.width && context.height == image.height,
            "the whole picture, not scaled");
    for (std::size_t i = 0; i < image.width * image.height * 4; ++i) {
        const int alpha = image.pixels[i | 3], value = image.pixels[i];
        context.pixels[i] = static_cast<UInt8>((i & 3) == 3 ? alpha : (value * alpha + 127) / 255);
    }
}
