#pragma once

#include <string>

#include "broker/BrokerIdentity.h"

namespace quorvantis::standin {

/// An agent that is registered in the application-support folder.
struct Installation {
    BrokerIdentity identity;
    std::string credentialPath;

    /// The shell command that starts the server for this agent, with the environment that it needs.
    std::string commandLine() const;
};

/// Registers the agent: writes its credential and its manifest. An agent that is already registered keeps
/// both, so that a client that was configured with them still works.
Installation registerAgent(const std::string& agent);

}  // namespace quorvantis::standin
