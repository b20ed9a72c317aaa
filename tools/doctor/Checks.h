#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Clients.h"
#include "Finding.h"
#include "broker/BrokerIdentity.h"
#include "integration/AgentManifest.h"

namespace quorvantis::doctor {

/// Examines the application-support folder and these agents, or if none is named all that are registered
/// there. Changes nothing. The results have no secrets in them.
std::vector<Result> examine(std::vector<std::string> agents);

/// An agent, and what its checks have found out so far.
struct Examination {
    std::string agent;
    AgentManifest manifest = {};
    BrokerIdentity identity = {};
    bool isRegistered = false;  // it has a manifest
    bool isKnown = false;       // the server accepts its name
    bool isProved = false;      // by its credential; then there is an identity
    bool canStart = false;      // the server
    bool canAsk = false;        // the application, at a socket of this user's alone
};

// Each check below needs what those before it have found.

Finding examineFolder(const std::vector<std::string>& agents);

Finding examineManifest(Examination& examination);
Finding examineAgent(Examination& examination);
Finding examineCredential(Examination& examination);

Finding examineServer(Examination& examination);
Finding examinePictures(Examination& examination);

Finding examineSocket(Examination& examination);
Finding examineStatus(Examination& examination);
Finding examineSession(Examination& examination);

/// Compares the client's configuration with the manifest. Empty if it has none, or none for this agent. Its
/// text is searched for the server's options, whatever its format.
std::optional<Finding> examineConfiguration(const Client& client, const AgentManifest& manifest);

}  // namespace quorvantis::doctor
