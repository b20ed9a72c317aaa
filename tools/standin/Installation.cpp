#include "Installation.h"

#include <string>
#include <unistd.h>

#include "integration/AgentManifest.h"
#include "integration/CredentialValidator.h"
#include "json/Date.h"
#include "json/JSONFiles.h"
#include "platform/Process.h"
#include "support/Files.h"
#include "support/HelperIO.h"
#include "support/Paths.h"

namespace quorvantis::standin {

namespace {

std::string manifestPath(const std::string& agent) {
    return joinedPath(HelperPaths().agents, agent + ".json");
}

/// The server is installed beside this program.
std::string serverPath() {
    const auto self = platform::executablePath(getpid());
    return joinedPath(self ? parentPath(*self) : ".", "quorvantis-mcp");
}

std::string newCredential() {
    return UUID::random().lowerCaseText() + UUID::random().lowerCaseText();
}

void writeRegistration(const std::string& agent) {
    const std::string credential = newCredential();
    const std::string credentialPath = joinedPath(HelperPaths().appSupport, "Credentials/" + agent);
    makeFolders(parentPath(credentialPath));
    HelperIO::writeProtected(credentialPath, credential, 0600);
    HelperIO::writeJSON(AgentManifest{.agent = agent,
                                      .installedAt = Date::now(),
                                      .clientID = UUID::random().lowerCaseText(),
                                      .credentialHash = HelperIO::sha256(credential),
                                      .credentialPath = credentialPath,
                                      .mcpServerName = "quorvantis",
                                      .mcpExecutablePath = serverPath()},
                        manifestPath(agent));
}

Installation readRegistration(const std::string& agent) {
    const auto manifest = HelperIO::readJSON<AgentManifest>(manifestPath(agent));
    const auto validated = CredentialValidator().validate(agent, manifest.clientID, manifest.credentialPath);
    return {{agent, manifest.clientID, validated.token}, manifest.credentialPath};
}

}  // namespace

std::string Installation::commandLine() const {
    return "QUORVANTIS_TESTING=1 QUORVANTIS_APP_SUPPORT=" + HelperIO::shellQuoted(HelperPaths().appSupport) +
           " \\\n    " + HelperIO::shellQuoted(serverPath()) + " serve --agent " + identity.agent +
           " --client-id " + HelperIO::shellQuoted(identity.clientID) + " \\\n    --credential-file " +
           HelperIO::shellQuoted(credentialPath);
}

Installation registerAgent(const std::string& agent) {
    if (access(manifestPath(agent).c_str(), F_OK) != 0) writeRegistration(agent);
    return readRegistration(agent);
}

}  // namespace quorvantis::standin
