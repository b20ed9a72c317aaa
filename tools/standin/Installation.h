#pragma once

#include <string>

#include "broker/BrokerIdentity.h"

namespace quorvantis::standin {

/// An agent that is registered in the application-support folder.
struct Installation {
    BrokerIdentity identity;

    /// The shell command that prints what to paste into a client, to connect it as this agent.
    std::string doctorCommand() const;
};

/// Registers the agent: writes its credential and its manifest. An agent that is already registered keeps
/// both, so that a client that was configured with them still works. Throws std::runtime_error, with the
/// manifest's path.
Installation registerAgent(const std::string& agent);

}  // namespace quorvantis::standin
