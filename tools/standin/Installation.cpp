#include "Installation.h"

#include <exception>
#include <stdexcept>
#include <string>
#include <unistd.h>

#include "integration/AgentManifest.h"
#include "integration/CredentialValidator.h"
#include "json/CodingErrors.h"
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

/// A program that is installed beside this one.
std::string programPath(const std::string& name) {
    const auto self = platform::executablePath(getpid());
    return joinedPath(self ? parentPath(*self) : ".", name);
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
                                      .mcpExecutablePath = programPath("quorvantis-mcp")},
                        manifestPath(agent));
}

Installation readRegistration(const std::string& agent) {
    const auto manifest = HelperIO::readJSON<AgentManifest>(manifestPath(agent));
    const auto validated = CredentialValidator().validate(agent, manifest.clientID, manifest.credentialPath);
    return {{agent, manifest.clientID, validated.token}};
}

}  // namespace

std::string Installation::doctorCommand() const {
    // The other agents have the names of their clients.
    const std::string client = identity.agent.starts_with("custom-") ? "CLIENT" : identity.agent;
    return HelperIO::shellQuoted(programPath("quorvantis-doctor")) + " --folder " +
           HelperIO::shellQuoted(HelperPaths().appSupport) + " --config " + client + " " + identity.agent;
}

Installation registerAgent(const std::string& agent) {
    try {
        if (access(manifestPath(agent).c_str(), F_OK) != 0) writeRegistration(agent);
        return readRegistration(agent);
    } catch (const DecodingError& failure) {
        throw std::runtime_error(manifestPath(agent) + ": " + failure.path() + ": " + failure.what());
    } catch (const std::exception& failure) {
        throw std::runtime_error(manifestPath(agent) + ": " + failure.what());
    }
}

}  // namespace quorvantis::standin
