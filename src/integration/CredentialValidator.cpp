#include "integration/CredentialValidator.h"

#include <string>
#include <string_view>
#include <utility>

#include "integration/AgentIdentifier.h"
#include "integration/AgentManifest.h"
#include "integration/HelperPaths.h"
#include "json/JSONFiles.h"
#include "platform/FileSystem.h"
#include "support/Files.h"
#include "support/HelperFailure.h"
#include "support/HelperIO.h"
#include "support/Paths.h"
#include "support/UTF8.h"

namespace quorvantis {

namespace {

bool isAccepted(std::string_view agent) {
    return AgentIdentifier::isValid(agent) || (isTestingMode() && agent == "test");
}

}  // namespace

ValidatedCredential CredentialValidator::validate(std::string_view agent, std::string_view clientID,
                                                  const std::string& credentialFile) const {
    if (!isAccepted(agent)) throw HelperFailure::invalidRequest("Invalid agent identifier.");
    auto manifest = HelperIO::readJSON<AgentManifest>(joinedPath(paths.agents, std::string(agent) + ".json"));
    const bool matches = manifest.agent == agent && manifest.clientID == clientID &&
                         (isTestingMode() || platform::samePathText(credentialFile, manifest.credentialPath));
    if (!matches)
        throw HelperFailure::invalidRequest("Client identity does not match the managed registration.");
    std::string token = readAny(credentialFile, maximumCredentialSize);
    // Checked first: a file other than the registered one is reported as invalid even if it is also
    // malformed.
    if (HelperIO::sha256(token) != manifest.credentialHash)
        throw HelperFailure::invalidRequest("Client credential is invalid.");
    if (token.empty() || !isValidUTF8(token))
        throw HelperFailure::invalidRequest("Client credential is malformed.");
    return {std::move(manifest), std::move(token)};
}

}  // namespace quorvantis
