#include "integration/HelperPaths.h"

#include <string>

#include "platform/Process.h"
#include "support/Paths.h"

namespace quorvantis {

namespace {

std::string applicationSupportFolder() {
    if (isTestingMode())
        if (const auto folder = platform::environmentVariable("QUORVANTIS_APP_SUPPORT"))
            return absolutePath(*folder);
    return joinedPath(absolutePath(platform::homeFolder()), "Library/Application Support/Quorvantis");
}

}  // namespace

bool isTestingMode() {
    return platform::environmentVariable("QUORVANTIS_TESTING") == "1";
}

HelperPaths::HelperPaths()
    : appSupport(applicationSupportFolder()),
      integrations(joinedPath(appSupport, "Integrations")),
      requests(joinedPath(integrations, "PairingRequests")),
      agents(joinedPath(integrations, "Agents")),
      database(joinedPath(appSupport, "Database/history.sqlite")),
      socket(joinedPath(appSupport, "Runtime/quorvantis.sock")) {}

}  // namespace quorvantis
