#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "platform/Descriptors.h"

namespace quorvantis::standin {

/// A listening Unix domain socket of mode 0600. The destructor removes it.
class BrokerSocket {
  public:
    /// Listens at the path, and replaces a socket there that has no listener. Throws std::runtime_error if it
    /// has one, if the path is too long for a socket, or if it names something else.
    explicit BrokerSocket(std::string path);
    BrokerSocket(const BrokerSocket&) = delete;
    BrokerSocket& operator=(const BrokerSocket&) = delete;
    ~BrokerSocket();

    /// Becomes ready for reading when a client connects.
    int descriptor() const { return listener_.get(); }

    /// Accepts a connection, if there is one, reads its request line and sends what `handle` returns for it.
    /// A client that is silent for 2 seconds or sends more than 1 MiB gets no reply.
    void serveOne(const std::function<std::string(std::string_view request)>& handle) const;

  private:
    std::string path_;
    platform::Descriptor listener_;
};

}  // namespace quorvantis::standin
