#pragma once

#include <string>

namespace quorvantis {

/// The client that this process serves. Built once at start-up and sent with every broker request.
struct BrokerIdentity {
    std::string agent;
    std::string clientID;
    std::string credential;  // secret
};

}  // namespace quorvantis
