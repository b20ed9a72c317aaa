#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <memory>
#include <string_view>
#include <type_traits>

namespace quorvantis::platform {

struct Release {
    void operator()(CFTypeRef object) const { CFRelease(object); }
};

/// Owns one reference to a Core Foundation object (also of Core Graphics or Image I/O), or null. Construct it
/// from the result of a function with "Create" or "Copy" in its name. The destructor releases the object.
template <class Reference>
using Owned = std::unique_ptr<std::remove_pointer_t<Reference>, Release>;

/// Creates a string; null if the text is not valid UTF-8.
inline Owned<CFStringRef> ownedString(std::string_view text) {
    return Owned<CFStringRef>(
        CFStringCreateWithBytes(kCFAllocatorDefault, reinterpret_cast<const UInt8*>(text.data()),
                                static_cast<CFIndex>(text.size()), kCFStringEncodingUTF8, false));
}

}  // namespace quorvantis::platform
