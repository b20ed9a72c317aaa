#pragma once

#include <string>

#include "broker/BrokerIdentity.h"

namespace quorvantis::standin {

/// An agent that is registered in the application-support folder in use.
struct Installation {
    BrokerIdentity identity;
    std::string credentialPath;

    /// The shell command that starts the server for this agent, its environment included.
    std::string commandLine() const;
};

/// Registers the agent: writes its credential and its manifest. An agent that is registered there already
/// keeps both, so that a client configured once goes on working.
Installation installed(const std::string& agent);

}  // namespace quorvantis::standin
