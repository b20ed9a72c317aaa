#pragma once

#include <spawn.h>

namespace quorvantis::platform {

/// Arranges that a child started with these gets the first `count` descriptors, which its file actions make,
/// and no others. Call it last: it adds to the actions and to the flags that were set before.
void inheritOnly(int count, posix_spawn_file_actions_t& actions, posix_spawnattr_t& attributes);

}  // namespace quorvantis::platform
