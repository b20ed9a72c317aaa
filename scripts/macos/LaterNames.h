// Comes before every source that scripts/check-macos compiles: marks what macOS 13.0 lacks and the headers of
// zig's libc++ do not mark. Apple's do.
#pragma once

#define LATER __attribute__((availability(macos, introduced = 14.0)))
namespace std {
inline namespace __1 {
namespace pmr {
class LATER memory_resource;
template <class>
class LATER polymorphic_allocator;
}  // namespace pmr
}  // namespace __1
}  // namespace std
#undef LATER
