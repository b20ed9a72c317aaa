#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <poll.h>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Descriptors.h"

namespace quorvantis::standin {

/// A Unix domain socket of mode 0600. The destructor removes it.
class BrokerSocket {
  public:
    /// Throws std::runtime_error if the path is too long for a socket.
    static void checkLength(const std::string& path);

    /// Locks the path, whose folder must exist, against other stand-ins. Throws std::runtime_error if it is
    /// being served, or if something else than a socket is there.
    explicit BrokerSocket(std::string path);
    BrokerSocket(const BrokerSocket&) = delete;
    BrokerSocket& operator=(const BrokerSocket&) = delete;
    ~BrokerSocket();

    /// Listens at the path; replaces a socket there that has no listener. Throws std::runtime_error.
    void listen();

    /// Adds what becomes ready for reading when a client connects or sends something.
    void addTo(std::vector<pollfd>& waiting) const;

    /// Accepts connections and reads what has arrived. Sends what `handle` returns for each whole request
    /// line, and closes the connection; where that is empty, the client is left waiting for a minute. A
    /// client that sends no whole line within 2 seconds, or more than 1 MiB, gets no reply.
    void serve(const std::function<std::optional<std::string>(std::string_view request)>& handle);

  private:
    struct Client {
        platform::Descriptor connection;
        std::chrono::steady_clock::time_point deadline;
        std::string request = {};
    };

    void acceptClients();

    std::string path_;
    platform::Descriptor lock_;  // of the socket's folder
    platform::Descriptor listener_;
    std::vector<Client> clients_;
};

}  // namespace quorvantis::standin
