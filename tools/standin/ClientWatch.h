#pragma once

#include <optional>
#include <string>
#include <vector>

#include "state/MCPClientSession.h"

namespace quorvantis::standin {

/// Says on standard output which clients connect and leave, from the records that their servers write.
class ClientWatch {
  public:
    explicit ClientWatch(const std::vector<std::string>& agents);

    /// Looks at the records again.
    void look();

  private:
    struct Client {
        std::string agent;
        std::optional<MCPClientSession> seen;
        bool wasRunning = false;
    };
    static void look(Client& client);

    std::vector<Client> clients_;
};

}  // namespace quorvantis::standin
