#include "platform/HomeFolder.h"

#include <cstdlib>
#include <pwd.h>
#include <unistd.h>

namespace quorvantis::platform {

std::string homeFolder() {
    // As Core Foundation: a program that runs as root for a user belongs to that user.
    const uid_t effective = geteuid();
    const passwd* const user = getpwuid(effective == 0 ? getuid() : effective);
    if (user && user->pw_dir && *user->pw_dir) return user->pw_dir;
    if (const char* home = std::getenv("HOME"); home && *home) return home;
    return "/";
}

}  // namespace quorvantis::platform
