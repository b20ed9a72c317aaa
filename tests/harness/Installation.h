#pragma once

#include "harness/ChildProcess.h"
#include "harness/TemporaryFolder.h"
#include "integration/AgentManifest.h"
#include "support/HelperIO.h"

namespace quorvantis::harness {

/// Where the server finds the application-support folder: by the testing environment, or in the home folder.
enum class Base { testing, home };

/// An application-support folder in which the agent "codex" is registered.
struct Installation {
    TemporaryFolder folder;
    std::string appSupport = folder.path();
    std::string credential = folder / "credential";
    std::vector<std::string> environment = {"QUORVANTIS_TESTING=1", "QUORVANTIS_APP_SUPPORT=" + appSupport};

    explicit Installation(Base base = Base::testing) {
        if (base == Base::home) {
            environment = {"QUORVANTIS_TESTING=true", "QUORVANTIS_APP_SUPPORT=" + appSupport,
                           "HOME=" + appSupport};
            appSupport += "/Library/Application Support/Quorvantis";
        }
        std::filesystem::create_directories(appSupport + "/Runtime");
        writeText(credential, "secret/token");
        const AgentManifest manifest = {.agent = "codex",
                                        .clientID = "client-1",
                                        .credentialHash = HelperIO::sha256("secret/token"),
                                        .credentialPath = credential};
        writeText(agentFile("codex.json"), encodedRecord(manifest));
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
