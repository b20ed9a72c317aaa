// The names of Image I/O that this project uses; see CoreFoundation.h.
#pragma once

#include <CoreGraphics/CoreGraphics.h>

extern "C" {

typedef struct CGImageSource* CGImageSourceRef;

extern const CFStringRef kCGImagePropertyPixelWidth;
extern const CFStringRef kCGImagePropertyPixelHeight;
extern const CFStringRef kCGImageSourceCreateThumbnailFromImageAlways;
extern const CFStringRef kCGImageSourceCreateThumbnailWithTransform;
extern const CFStringRef kCGImageSourceThumbnailMaxPixelSize;

CGImageSourceRef CGImageSourceCreateWithDataProvider(CGDataProviderRef, CFDictionaryRef options);
CFDictionaryRef CGImageSourceCopyPropertiesAtIndex(CGImageSourceRef, std::size_t index,
                                                   CFDictionaryRef options);
CGImageRef CGImageSourceCreateThumbnailAtIndex(CGImageSourceRef, std::size_t index, CFDictionaryRef options);
}
