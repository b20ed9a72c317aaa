#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <memory>
#include <string_view>
#include <type_traits>

namespace quorvantis::platform {

struct Release {
    void operator()(CFTypeRef object) const { CFRelease(object); }
};

/// Owns one reference to a Core Foundation object, of Core Graphics and Image I/O too, and releases it. Made
/// from what a function with "Create" or "Copy" in its name answers; null stands for none.
template <class Reference>
using Owned = std::unique_ptr<std::remove_pointer_t<Reference>, Release>;

/// A string of the text; null when it is not UTF-8.
inline Owned<CFStringRef> ownedString(std::string_view text) {
    return Owned<CFStringRef>(
        CFStringCreateWithBytes(kCFAllocatorDefault, reinterpret_cast<const UInt8*>(text.data()),
                                static_cast<CFIndex>(text.size()), kCFStringEncodingUTF8, false));
}

}  // namespace quorvantis::platform
