#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "AgentManifest.h"
#include "HelperPaths.h"

namespace quorvantis {

/// The result of a successful validation: the caller is the client registered for its agent.
struct ValidatedCredential {
    AgentManifest manifest;
    std::string token;  // the credential file's whole content, never empty
};

/// The size limit of credential files in bytes: every request carries the credential.
inline constexpr std::size_t maximumCredentialSize = 1 << 20;

/// Checks a caller against the manifest of the agent that it claims to be.
struct CredentialValidator {
    HelperPaths paths;

    /// `credentialFile` is an absolute path, and may name a pipe; a manifest is a regular file. Throws
    /// HelperFailure `invalidRequest` if the caller is not the registered client; FileError or DecodingError
    /// if the manifest or the credential cannot be read.
    ValidatedCredential validate(std::string_view agent, std::string_view clientID,
                                 const std::string& credentialFile) const;
};

}  // namespace quorvantis
