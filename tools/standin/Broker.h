#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "HistoryFile.h"
#include "Installation.h"

namespace quorvantis::standin {

/// The desktop application's side of the broker protocol: one request line in, one reply line out.
class Broker {
  public:
    Broker(HistoryFile history, std::vector<Installation> agents, bool refusesHistory)
        : history_(std::move(history)), agents_(std::move(agents)), refusesHistory_(refusesHistory) {}

    /// The reply, with its line feed. A request that cannot be served is answered with an "error" text. Says
    /// on standard output what was asked.
    std::string answer(std::string_view request) const;

  private:
    using Operation = void (Broker::*)(JSON request, JSONWriter& reply) const;
    struct OperationRow;
    static const OperationRow operations[];

    void run(JSON request, JSONWriter& reply) const;
    void checkCaller(JSON request) const;
    void checkHistoryAccess() const;

    void status(JSON request, JSONWriter& reply) const;
    void searchHistory(JSON request, JSONWriter& reply) const;
    void getHistoryItem(JSON request, JSONWriter& reply) const;

    HistoryFile history_;
    std::vector<Installation> agents_;
    bool refusesHistory_;
};

}  // namespace quorvantis::standin
