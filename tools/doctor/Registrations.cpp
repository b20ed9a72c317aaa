#include "Registrations.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>
#include <unistd.h>
#include <vector>

#include "integration/AgentManifest.h"
#include "integration/HelperPaths.h"
#include "platform/Process.h"
#include "support/HelperIO.h"
#include "support/Paths.h"

namespace quorvantis::doctor {

namespace {

/// The start of a command: a program beside this one, called as this one was, and in testing mode the folder.
std::string command(const std::string& name) {
    const std::string self = platform::firstArgument();
    const std::string program = self.find('/') == self.npos ? name : joinedPath(parentPath(self), name);
    return program + (isTestingMode() ? " --folder " + HelperIO::shellQuoted(HelperPaths().appSupport) : "");
}

}  // namespace

std::string manifestPath(const std::string& agent) {
    return joinedPath(HelperPaths().agents, agent + ".json");
}

std::vector<std::string> registeredAgents() {
    std::vector<std::string> agents;
    std::error_code unreadable;  // then there are none
    for (const auto& file : std::filesystem::directory_iterator(HelperPaths().agents, unreadable)) {
        const std::string name = file.path().stem();
        const bool isRecord = name.ends_with("-mcp-session") || name.ends_with("-hook-state");
        if (file.path().extension() == ".json" && !isRecord) agents.push_back(name);
    }
    std::sort(agents.begin(), agents.end());
    return agents;
}

std::string serverName(const AgentManifest& manifest) {
    return manifest.mcpServerName.empty() ? "quorvantis" : manifest.mcpServerName;
}

std::string serverPath(const AgentManifest& manifest) {
    if (!manifest.mcpExecutablePath.empty()) return manifest.mcpExecutablePath;
    return joinedPath(parentPath(platform::executablePath(getpid()).value_or("/")), "quorvantis-mcp");
}

std::vector<std::string> serverArguments(const AgentManifest& manifest) {
    return {"serve",           "--agent",           manifest.agent,         "--client-id",
            manifest.clientID, "--credential-file", manifest.credentialPath};
}

std::string joined(const std::vector<std::string>& texts) {
    std::string list;
    for (const std::string& text : texts) list += (list.empty() ? "" : ", ") + text;
    return list;
}

std::string startAdvice(const std::string& agent) {
    if (!isTestingMode()) return "Start Quorvantis.";
    return "Start the stand-in: " + command("quorvantis-standin") + " --agent " + agent;
}

std::string connectAdvice(const std::string& agent) {
    const std::string first =
        isTestingMode() ? "Stop the stand-in, remove " + manifestPath(agent) + ", and start it again."
                        : "Connect the agent again in Quorvantis.";
    return first + " Then replace the client's entry by what this prints: " + configCommand("CLIENT", agent);
}

std::string configCommand(std::string_view client, const std::string& agent) {
    return command("quorvantis-doctor") + " --config " + std::string(client) + " " + agent;
}

}  // namespace quorvantis::doctor
