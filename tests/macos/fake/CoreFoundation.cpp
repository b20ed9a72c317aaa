#include <memory>
#include <utf8proc.h>
#include <utility>
#include <vector>

#include "Objects.h"
#include "platform/macos/AutoreleasePool.h"
#include "support/UTF8.h"

namespace fake {

namespace {

long live = 0;

struct Observer {
    CFNotificationCallback callback;
    std::string name;
    bool hasNews = false;
};
std::map<const void*, Observer> observers;
std::string posted;
Object centre;
std::vector<std::unique_ptr<char>> pools;  // each known by an address of its own

}  // namespace

long liveObjects() {
    return live;
}

void count(long created) {
    live += created;
}

void requirePool() {
    require(!pools.empty(), "an autorelease pool");
}

CFStringRef constant(const char* text) {
    static std::map<std::string, String> constants;
    String& string = constants[text];
    string.text = text;
    return reinterpret_cast<CFStringRef>(static_cast<Object*>(&string));
}

std::string takePosted() {
    return std::exchange(posted, {});
}

}  // namespace fake

using namespace fake;

struct CFDictionaryKeyCallBacks {};
struct CFDictionaryValueCallBacks {};
static Object yes;

const CFAllocatorRef kCFAllocatorDefault = nullptr;
const CFBooleanRef kCFBooleanTrue = reinterpret_cast<CFBooleanRef>(&yes);
const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks = {};
const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks = {};
const CFRunLoopMode kCFRunLoopDefaultMode = constant("kCFRunLoopDefaultMode");

void* objc_autoreleasePoolPush() {
    count(1);
    return pools.emplace_back(std::make_unique<char>()).get();
}

void objc_autoreleasePoolPop(void* pool) {
    require(!pools.empty() && pools.back().get() == pool, "the innermost pool ends first");
    count(-1);
    pools.pop_back();
}

void CFRelease(CFTypeRef reference) {
    auto& released = object<Object>(reference);
    if (--released.references > 0) return;
    count(-1);
    delete &released;
}

CFTypeID CFNumberGetTypeID() {
    return 1;
}

CFTypeID CFGetTypeID(CFTypeRef reference) {
    return dynamic_cast<Number*>(&object<Object>(reference)) ? CFNumberGetTypeID() : 0;
}

Boolean CFEqual(CFTypeRef one, CFTypeRef other) {
    return text(one) == text(other);
}

CFNumberRef CFNumberCreate(CFAllocatorRef, CFNumberType type, const void* value) {
    require(type == kCFNumberSInt64Type, "numbers of 64 bits");
    auto* const number = new Number;
    number->value = static_cast<double>(*static_cast<const std::int64_t*>(value));
    return created<CFNumberRef>(number);
}

Boolean CFNumberGetValue(CFNumberRef reference, CFNumberType type, void* value) {
    require(type == kCFNumberSInt64Type, "numbers of 64 bits");
    const double number = object<Number>(reference).value;
    const auto whole = static_cast<std::int64_t>(number);
    *static_cast<std::int64_t*>(value) = whole;
    return static_cast<double>(whole) == number;
}

CFStringRef CFStringCreateWithBytes(CFAllocatorRef, const UInt8* bytes, CFIndex count,
                                    CFStringEncoding encoding, Boolean) {
    require(encoding == kCFStringEncodingUTF8, "UTF-8");
    auto* const string = new String;
    string->text.assign(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(count));
    const auto reference = created<CFStringRef>(string);
    if (quorvantis::isValidUTF8(string->text)) return reference;
    CFRelease(reference);
    return nullptr;
}

CFMutableStringRef CFStringCreateMutableCopy(CFAllocatorRef, CFIndex, CFStringRef original) {
    auto* const string = new String;
    string->text = text(original);
    return created<CFMutableStringRef>(string);
}

void CFStringNormalize(CFMutableStringRef reference, CFStringNormalizationForm form) {
    require(form == kCFStringNormalizationFormD, "canonical decomposition");
    auto& text = object<String>(reference).text;
    utf8proc_uint8_t* decomposed = nullptr;
    const auto size = utf8proc_map(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
                                   static_cast<utf8proc_ssize_t>(text.size()), &decomposed,
                                   static_cast<utf8proc_option_t>(UTF8PROC_DECOMPOSE | UTF8PROC_STABLE));
    text.assign(reinterpret_cast<const char*>(decomposed), static_cast<std::size_t>(size));
    std::free(decomposed);
}

CFMutableDataRef CFDataCreateMutable(CFAllocatorRef, CFIndex longest) {
    require(longest == 0, "data that may grow");
    return created<CFMutableDataRef>(new Data);
}

void CFDataSetLength(CFMutableDataRef data, CFIndex count) {
    object<Data>(data).bytes.resize(static_cast<std::size_t>(count));
}

UInt8* CFDataGetMutableBytePtr(CFMutableDataRef data) {
    return reinterpret_cast<UInt8*>(object<Data>(data).bytes.data());
}

CFDictionaryRef CFDictionaryCreate(CFAllocatorRef, const void** keys, const void** values, CFIndex count,
                                   const CFDictionaryKeyCallBacks* ofKeys,
                                   const CFDictionaryValueCallBacks* ofValues) {
    require(ofKeys == &kCFTypeDictionaryKeyCallBacks && ofValues == &kCFTypeDictionaryValueCallBacks,
            "dictionaries that own what they hold");
    auto* const dictionary = new Dictionary;
    for (CFIndex i = 0; i < count; ++i) {
        auto& value = object<Object>(values[i]);
        ++value.references;
        dictionary->values[text(keys[i])] = &value;
    }
    return created<CFDictionaryRef>(dictionary);
}

const void* CFDictionaryGetValue(CFDictionaryRef reference, const void* key) {
    const auto& values = object<Dictionary>(reference).values;
    const auto found = values.find(text(key));
    return found == values.end() ? nullptr : found->second;
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
    for (auto& [observer, news] : observers) news.hasNews |= news.name == text(name);
}

void CFNotificationCenterAddObserver(CFNotificationCenterRef, const void* observer,
                                     CFNotificationCallback callback, CFStringRef name, const void*,
                                     CFNotificationSuspensionBehavior behavior) {
    require(behavior == CFNotificationSuspensionBehaviorDeliverImmediately, "delivery at once");
    observers[observer] = {.callback = callback, .name = text(name)};
}

void CFNotificationCenterRemoveEveryObserver(CFNotificationCenterRef, const void* observer) {
    observers.erase(observer);
}

CFRunLoopRunResult CFRunLoopRunInMode(CFRunLoopMode mode, CFTimeInterval seconds, Boolean) {
    requirePool();
    require(mode == kCFRunLoopDefaultMode && seconds == 0, "only what has arrived");
    for (auto& [observer, news] : observers) {
        if (!std::exchange(news.hasNews, false)) continue;
        news.callback(CFNotificationCenterGetDistributedCenter(), const_cast<void*>(observer), nullptr,
                      nullptr, nullptr);
        return kCFRunLoopRunHandledSource;
    }
    return kCFRunLoopRunTimedOut;
}
