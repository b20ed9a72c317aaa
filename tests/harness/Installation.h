#pragma once

#include "harness/ChildProcess.h"
#include "harness/TemporaryFolder.h"
#include "integration/AgentManifest.h"
#include "support/HelperIO.h"

namespace quorvantis::harness {

/// An application-support folder in which the agent "codex" is registered.
struct Installation {
    TemporaryFolder folder;
    std::string appSupport;
    std::string credential = folder / "credential";
    std::vector<std::string> environment = {"QUORVANTIS_TESTING=1",
                                            "QUORVANTIS_APP_SUPPORT=" + folder.path()};

    /// The application-support folder is the temporary one, or `below` it.
    explicit Installation(const std::string& below = "") : appSupport(folder.path() + below) {
        std::filesystem::create_directories(appSupport + "/Runtime");
        writeText(credential, "secret/token");
        writeText(agentFile("codex.json"), encodedRecord(manifest()));
    }

    AgentManifest manifest() const {
        return {.agent = "codex",
                .clientID = "client-1",
                .credentialHash = HelperIO::sha256("secret/token"),
                .credentialPath = credential};
    }

    std::string socket() const { return appSupport + "/Runtime/quorvantis.sock"; }
    std::string agentFile(const std::string& name) const {
        return appSupport + "/Integrations/Agents/" + name;
    }

    /// The server with these arguments, or for the registered agent.
    ChildProcess::Launch launch(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), QUORVANTIS_SERVER);
        return {std::move(arguments), environment};
    }
    ChildProcess::Launch launch() const {
        return launch(
            {"serve", "--agent", "codex", "--client-id", "client-1", "--credential-file", credential});
    }
};

}  // namespace quorvantis::harness
