#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "integration/AgentManifest.h"

namespace quorvantis::doctor {

/// The path of an agent's manifest.
std::string manifestPath(const std::string& agent);

/// The agents that have a manifest, in alphabetical order.
std::vector<std::string> registeredAgents();

/// The server's name in a client's configuration.
std::string serverName(const AgentManifest& manifest);

/// The server that the manifest names; if it names none, the one beside this program.
std::string serverPath(const AgentManifest& manifest);

/// The server's arguments for the agent.
std::vector<std::string> serverArguments(const AgentManifest& manifest);

// Words for advice.

/// The texts with ", " between them.
std::string joined(const std::vector<std::string>& texts);

/// How to start the desktop application, or in testing mode the stand-in.
std::string startAdvice(const std::string& agent);

/// How to give an agent a new manifest and credential.
std::string connectAdvice(const std::string& agent);

/// The command that prints what to paste into a client.
std::string configCommand(std::string_view client, const std::string& agent);

}  // namespace quorvantis::doctor
