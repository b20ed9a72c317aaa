#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Installation.h"
#include "json/JSON.h"
#include "json/JSONWriter.h"

namespace quorvantis::standin {

/// Broker operations by name. Each reads a request and writes its results as members of the reply; it throws
/// std::exception with a text for the agent to refuse.
using Operations = std::map<std::string, std::function<void(JSON request, JSONWriter& reply)>, std::less<>>;

/// The desktop application's side of the broker protocol: one request line in, one reply line out.
class Broker {
  public:
    Broker(std::vector<Installation> agents, Operations operations)
        : agents_(std::move(agents)), operations_(std::move(operations)) {}

    /// The reply, with its line feed. A request that cannot be served is answered with an "error" text. Says
    /// on standard output what was asked.
    std::string answer(std::string_view request) const;

  private:
    void checkCaller(JSON request) const;
    void run(JSON request, JSONWriter& reply) const;

    std::vector<Installation> agents_;
    Operations operations_;
};

}  // namespace quorvantis::standin
