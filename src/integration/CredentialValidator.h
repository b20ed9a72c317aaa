#pragma once

#include <string>
#include <string_view>

#include "integration/AgentManifest.h"
#include "integration/HelperPaths.h"

namespace quorvantis {

/// A caller that proved to be the client registered for its agent.
struct ValidatedCredential {
    AgentManifest manifest;
    std::string token;  // the credential file's whole content, never empty
};

/// Checks a caller against the manifest of the agent that it says it is.
struct CredentialValidator {
    HelperPaths paths;

    /// `credentialFile` is an absolute path. Throws HelperFailure `invalidRequest` for a caller that is not
    /// the registered client; FileError and DecodingError for files that cannot be read.
    ValidatedCredential validate(std::string_view agent, std::string_view clientID,
                                 const std::string& credentialFile) const;
};

}  // namespace quorvantis
