#pragma once

#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "../json/Date.h"
#include "../json/JSONRecord.h"

namespace quorvantis {

/// An agent's registration by the desktop application: the file "<agent>.json" in `HelperPaths::agents`.
struct AgentManifest {
    std::string agent;
    Date installedAt;
    std::string clientID;
    std::string credentialHash;  // SHA-256 of the credential file's bytes, 64 lower-case hexadecimal digits
    std::string credentialPath;  // absolute
    std::string mcpServerName;
    std::string mcpExecutablePath;
    std::string hookExecutablePath;
    std::vector<std::string> managedEntries;
    std::vector<std::string> backupPaths;
    std::optional<std::string> registrationID;

    static constexpr auto fields() {
        using M = AgentManifest;
        return std::tuple(
            Field("agent", &M::agent), Field("installedAt", &M::installedAt), Field("clientID", &M::clientID),
            Field("credentialHash", &M::credentialHash), Field("credentialPath", &M::credentialPath),
            Field("mcpServerName", &M::mcpServerName), Field("mcpExecutablePath", &M::mcpExecutablePath),
            Field("hookExecutablePath", &M::hookExecutablePath), Field("managedEntries", &M::managedEntries),
            Field("backupPaths", &M::backupPaths), Field("registrationID", &M::registrationID));
    }
};

}  // namespace quorvantis
