// The names of Core Graphics that this project uses; see CoreFoundation.h.
#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <cstddef>
#include <sys/types.h>

extern "C" {

typedef struct CGColorSpace* CGColorSpaceRef;
typedef struct CGContext* CGContextRef;
typedef struct CGImage* CGImageRef;

using CGFloat = double;
struct CGPoint {
    CGFloat x, y;
};
struct CGSize {
    CGFloat width, height;
};
struct CGRect {
    CGPoint origin;
    CGSize size;
};
inline CGRect CGRectMake(CGFloat x, CGFloat y, CGFloat width, CGFloat height) {
    return {{x, y}, {width, height}};
}

enum CGImageAlphaInfo : std::uint32_t { kCGImageAlphaPremultipliedLast = 1 };
enum CGBitmapInfo : std::uint32_t { kCGBitmapByteOrder32Big = 0x4000 };
enum CGInterpolationQuality : std::int32_t { kCGInterpolationDefault = 0, kCGInterpolationNone = 1 };

typedef struct CGDataProvider* CGDataProviderRef;
struct CGDataProviderDirectCallbacks {
    unsigned version;
    const void* (*getBytePointer)(void* info);
    void (*releaseBytePointer)(void* info, const void* pointer);
    std::size_t (*getBytesAtPosition)(void* info, void* buffer, off_t position, std::size_t count);
    void (*releaseInfo)(void* info);
};
CGDataProviderRef CGDataProviderCreateDirect(void* info, off_t size, const CGDataProviderDirectCallbacks*);

extern const CFStringRef kCGColorSpaceSRGB;
CGColorSpaceRef CGColorSpaceCreateWithName(CFStringRef name);

std::size_t CGImageGetWidth(CGImageRef);
std::size_t CGImageGetHeight(CGImageRef);

CGContextRef CGBitmapContextCreate(void* pixels, std::size_t width, std::size_t height,
                                   std::size_t bitsPerComponent, std::size_t bytesPerRow, CGColorSpaceRef,
                                   std::uint32_t bitmapInfo);
void CGContextSetInterpolationQuality(CGContextRef, CGInterpolationQuality);
void CGContextDrawImage(CGContextRef, CGRect, CGImageRef);
}
