#include "platform/Spawn.h"

namespace quorvantis::platform {

void inheritOnly(int, posix_spawn_file_actions_t&, posix_spawnattr_t& attributes) {
    short flags = 0;
    posix_spawnattr_getflags(&attributes, &flags);
    posix_spawnattr_setflags(&attributes, static_cast<short>(flags | POSIX_SPAWN_CLOEXEC_DEFAULT));
}

}  // namespace quorvantis::platform
