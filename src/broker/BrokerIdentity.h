#pragma once

#include <string>

namespace quorvantis {

/// Whom this process serves: built once at start-up, sent with every broker request.
struct BrokerIdentity {
    std::string agent;
    std::string clientID;
    std::string credential;  // secret
};

}  // namespace quorvantis
