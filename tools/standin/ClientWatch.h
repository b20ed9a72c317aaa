#pragma once

#include <optional>
#include <string>
#include <vector>

#include "state/MCPClientSession.h"

namespace quorvantis::standin {

/// Logs which clients connect and leave, from the session records that their servers write.
class ClientWatch {
  public:
    explicit ClientWatch(const std::vector<std::string>& agents);

    /// Reads the records again.
    void update();

  private:
    struct Client {
        std::string agent;
        std::optional<MCPClientSession> lastSession;
        bool wasRunning = false;
    };
    static void update(Client& client);

    std::vector<Client> clients_;
};

}  // namespace quorvantis::standin
