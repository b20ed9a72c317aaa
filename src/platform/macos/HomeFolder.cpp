#include "platform/HomeFolder.h"

#include <cstdlib>
#include <pwd.h>
#include <unistd.h>

namespace quorvantis::platform {

std::string homeFolder() {
    if (const passwd* user = getpwuid(getuid()); user && user->pw_dir && *user->pw_dir) return user->pw_dir;
    if (const char* home = std::getenv("HOME"); home && *home) return home;
    return "/";
}

}  // namespace quorvantis::platform
