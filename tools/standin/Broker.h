#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Installation.h"
#include "Operations.h"

namespace quorvantis::standin {

/// The desktop application's side of the broker protocol: one reply line for each request line.
class Broker {
  public:
    Broker(std::vector<Installation> agents, Operations operations)
        : agents_(std::move(agents)), operations_(std::move(operations)) {}

    /// Returns the reply, line feed included: the operation's results, or an "error" text when the caller is
    /// not one of the agents or the operation fails. Logs the request.
    std::string handle(std::string_view request) const;

  private:
    void checkCaller(JSON request) const;
    void run(JSON request, JSONWriter& reply) const;

    std::vector<Installation> agents_;
    Operations operations_;
};

}  // namespace quorvantis::standin
