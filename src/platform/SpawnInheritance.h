#pragma once

#include <spawn.h>

namespace quorvantis::platform {

/// Arranges that a child started with these gets the descriptors 0 up to `count` that its file actions make,
/// and no others. Call it after all the others are set.
void inheritOnly(int count, posix_spawn_file_actions_t& actions, posix_spawnattr_t& attributes);

}  // namespace quorvantis::platform
