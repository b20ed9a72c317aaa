#include "SessionSignals.h"

#include "platform/macos/AutoreleasePool.h"
#include "platform/macos/ClientSessionSignal.h"
#include "platform/macos/Owned.h"

namespace quorvantis::standin {

struct SessionSignals::Connection {
    bool hasArrived = false;

    ~Connection() {
        const platform::AutoreleasePool pool;
        CFNotificationCenterRemoveEveryObserver(CFNotificationCenterGetDistributedCenter(), this);
    }

    static void receive(CFNotificationCenterRef, void* connection, CFNotificationName, const void*,
                        CFDictionaryRef) {
        static_cast<Connection*>(connection)->hasArrived = true;
    }
};

SessionSignals::SessionSignals() : connection_(std::make_unique<Connection>()) {
    const platform::AutoreleasePool pool;
    const auto name = platform::ownedString(platform::clientSessionChanged);
    CFNotificationCenterAddObserver(CFNotificationCenterGetDistributedCenter(), connection_.get(),
                                    Connection::receive, name.get(), nullptr,
                                    CFNotificationSuspensionBehaviorDeliverImmediately);
}

SessionSignals::~SessionSignals() = default;

int SessionSignals::descriptor() const {
    return -1;  // the system delivers to run loops only
}

bool SessionSignals::take() {
    const platform::AutoreleasePool pool;
    connection_->hasArrived = false;
    while (CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0, true) == kCFRunLoopRunHandledSource) {}
    return connection_->hasArrived;
}

}  // namespace quorvantis::standin
