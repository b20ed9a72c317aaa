#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>

/// A stand-in for the frameworks of macOS, to run the sources for macOS on Linux. It checks how it is called
/// and ends the program at a misuse; it proves nothing of what the real ones answer.
namespace fake {

struct Object {
    virtual ~Object() = default;
    long references = 1;
};

struct String : Object {
    std::string text;
};

struct Dictionary : Object {
    std::map<std::string, Object*> values;  // each with a reference of its own
    ~Dictionary() override {
        for (const auto& [key, value] : values) CFRelease(value);
    }
};

struct Number : Object {
    double value = 0;
};

struct Data : Object {
    std::string bytes;
};

/// Objects created and not yet released, constants aside.
long liveObjects();
/// Adds to their number.
void count(long created);

[[noreturn]] inline void misuse(const char* rule) {
    std::fprintf(stderr, "Misuse of a framework: %s\n", rule);
    std::abort();
}

inline void require(bool holds, const char* rule) {
    if (!holds) misuse(rule);
}

/// The object behind a reference, which must be of the type.
template <class T>
T& object(CFTypeRef reference) {
    require(reference != nullptr, "no null references");
    auto* const found = dynamic_cast<T*>(static_cast<Object*>(const_cast<void*>(reference)));
    require(found != nullptr, "a reference of the right type");
    return *found;
}

/// A reference to a new object, which its receiver has to release.
template <class Reference, class T>
Reference created(T* made) {
    count(1);
    return reinterpret_cast<Reference>(static_cast<Object*>(made));
}

/// Ends the program outside an autorelease pool. Each open pool counts as a live object.
void requirePool();

/// A string that lives as long as the program.
CFStringRef constant(const char* text);

inline const std::string& text(CFTypeRef string) {
    return object<String>(string).text;
}

/// The notifications posted since the last call, a line each: "<name> <object> <options>".
std::string takePosted();

}  // namespace fake
