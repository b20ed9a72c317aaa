#pragma once

// Of the Objective-C runtime, which every framework loads. The SDK has no header for them; they are part of
// the runtime interface that clang documents with automatic reference counting.
extern "C" {
void* objc_autoreleasePoolPush();
void objc_autoreleasePoolPop(void* pool);
}

namespace quorvantis::platform {

/// While it lives, holds what frameworks leave to be released "later" on this thread, then releases that.
/// Without one, it would stay until the thread ends. Pools nest.
class AutoreleasePool {
  public:
    AutoreleasePool() = default;
    AutoreleasePool(const AutoreleasePool&) = delete;
    AutoreleasePool& operator=(const AutoreleasePool&) = delete;
    ~AutoreleasePool() { objc_autoreleasePoolPop(pool_); }

  private:
    void* const pool_ = objc_autoreleasePoolPush();
};

}  // namespace quorvantis::platform
