#include "state/MCPClientSession.h"

#include <signal.h>
#include <string>
#include <string_view>
#include <unistd.h>

#include "broker/BrokerIdentity.h"
#include "integration/HelperPaths.h"
#include "json/Date.h"
#include "json/JSONFiles.h"
#include "platform/ClientSessionNotification.h"
#include "platform/FileSystem.h"
#include "platform/Process.h"
#include "support/Paths.h"
#include "support/UTF8.h"

namespace quorvantis {

namespace {

std::string resolvedPath(const std::string& path) {
    return repairedUTF8(platform::resolvingSymbolicLinks(absolutePath(path)));
}

}  // namespace

void MCPClientSession::record(const BrokerIdentity& identity, std::string_view clientName) {
    if (platform::environmentVariable("QUORVANTIS_DIAGNOSTIC") == "1") return;
    HelperIO::writeAdvisoryJSON(MCPClientSession{.clientID = identity.clientID,
                                                 .processID = getpid(),
                                                 .executablePath = resolvedPath(platform::firstArgument()),
                                                 .clientName = std::string(clientName),
                                                 .initializedAt = Date::now()},
                                url(identity.agent));
    platform::postClientSessionChanged(identity.agent);
}

std::string MCPClientSession::url(std::string_view agent) {
    return joinedPath(HelperPaths().agents, std::string(agent) + "-mcp-session.json");
}

bool MCPClientSession::isRunning() const {
    if (processID < 1 || kill(processID, 0) != 0) return false;
    const auto running = platform::executablePath(processID);
    return running && resolvedPath(*running) == executablePath;
}

}  // namespace quorvantis
