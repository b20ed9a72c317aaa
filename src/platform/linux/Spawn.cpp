#include "platform/Spawn.h"

namespace quorvantis::platform {

void inheritOnly(int count, posix_spawn_file_actions_t& actions, posix_spawnattr_t&) {
    posix_spawn_file_actions_addclosefrom_np(&actions, count);
}

}  // namespace quorvantis::platform
