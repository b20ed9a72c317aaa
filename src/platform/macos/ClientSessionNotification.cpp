#include "platform/ClientSessionNotification.h"

#include "platform/macos/AutoreleasePool.h"
#include "platform/macos/ClientSessionSignal.h"
#include "platform/macos/Owned.h"

namespace quorvantis::platform {

void postClientSessionChanged(const std::string& agent) {
    const AutoreleasePool pool;
    const auto name = ownedString(clientSessionChanged);
    const auto object = ownedString(agent);
    CFNotificationCenterPostNotificationWithOptions(CFNotificationCenterGetDistributedCenter(), name.get(),
                                                    object.get(), nullptr, kCFNotificationDeliverImmediately);
}

}  // namespace quorvantis::platform
