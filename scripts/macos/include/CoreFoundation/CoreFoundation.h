// The names of Core Foundation that this project uses, declared as Apple's public reference documents them,
// to compile and link the sources for macOS where there is no SDK. A Mac uses the SDK's own header instead.
#pragma once

#include <cstdint>

extern "C" {

using Boolean = unsigned char;
using UInt8 = unsigned char;
using CFIndex = long;
using CFOptionFlags = unsigned long;
using CFTypeID = unsigned long;
using CFTimeInterval = double;

typedef const void* CFTypeRef;
typedef const struct __CFAllocator* CFAllocatorRef;
typedef const struct __CFBoolean* CFBooleanRef;
typedef const struct __CFDictionary* CFDictionaryRef;
typedef const struct __CFNumber* CFNumberRef;
typedef const struct __CFString* CFStringRef;
typedef struct __CFString* CFMutableStringRef;
typedef struct __CFNotificationCenter* CFNotificationCenterRef;

extern const CFAllocatorRef kCFAllocatorDefault;

void CFRelease(CFTypeRef object);
CFTypeID CFGetTypeID(CFTypeRef object);
Boolean CFEqual(CFTypeRef one, CFTypeRef other);

extern const CFBooleanRef kCFBooleanTrue;

using CFNumberType = CFIndex;
enum : CFNumberType { kCFNumberSInt64Type = 4 };
CFTypeID CFNumberGetTypeID();
CFNumberRef CFNumberCreate(CFAllocatorRef, CFNumberType, const void* value);
Boolean CFNumberGetValue(CFNumberRef, CFNumberType, void* value);

using CFStringEncoding = std::uint32_t;
enum : CFStringEncoding { kCFStringEncodingUTF8 = 0x08000100 };
using CFStringNormalizationForm = CFIndex;
enum : CFStringNormalizationForm { kCFStringNormalizationFormD = 0 };
CFStringRef CFStringCreateWithBytes(CFAllocatorRef, const UInt8* bytes, CFIndex count, CFStringEncoding,
                                    Boolean mayHaveByteOrderMark);
CFMutableStringRef CFStringCreateMutableCopy(CFAllocatorRef, CFIndex longest, CFStringRef);
void CFStringNormalize(CFMutableStringRef, CFStringNormalizationForm);

struct CFDictionaryKeyCallBacks;
struct CFDictionaryValueCallBacks;
extern const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks;
extern const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks;
CFDictionaryRef CFDictionaryCreate(CFAllocatorRef, const void** keys, const void** values, CFIndex count,
                                   const CFDictionaryKeyCallBacks*, const CFDictionaryValueCallBacks*);
const void* CFDictionaryGetValue(CFDictionaryRef, const void* key);

using CFNotificationName = CFStringRef;
using CFNotificationSuspensionBehavior = CFIndex;
enum : CFNotificationSuspensionBehavior { CFNotificationSuspensionBehaviorDeliverImmediately = 4 };
enum : CFOptionFlags { kCFNotificationDeliverImmediately = 1 };
using CFNotificationCallback = void (*)(CFNotificationCenterRef, void* observer, CFNotificationName,
                                        const void* object, CFDictionaryRef userInfo);
CFNotificationCenterRef CFNotificationCenterGetDistributedCenter();
void CFNotificationCenterPostNotificationWithOptions(CFNotificationCenterRef, CFNotificationName,
                                                     const void* object, CFDictionaryRef userInfo,
                                                     CFOptionFlags);
void CFNotificationCenterAddObserver(CFNotificationCenterRef, const void* observer, CFNotificationCallback,
                                     CFStringRef name, const void* object, CFNotificationSuspensionBehavior);
void CFNotificationCenterRemoveEveryObserver(CFNotificationCenterRef, const void* observer);

using CFRunLoopMode = CFStringRef;
enum CFRunLoopRunResult : std::int32_t { kCFRunLoopRunTimedOut = 3, kCFRunLoopRunHandledSource = 4 };
extern const CFRunLoopMode kCFRunLoopDefaultMode;
CFRunLoopRunResult CFRunLoopRunInMode(CFRunLoopMode, CFTimeInterval seconds,
                                      Boolean returnAfterSourceHandled);
}
