#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "platform/Descriptors.h"

namespace quorvantis::standin {

/// A Unix domain socket that listens, of mode 0600; removed with this object.
class BrokerSocket {
  public:
    /// Takes over a socket that was left behind. Throws std::runtime_error when somebody serves it, when the
    /// path is too long for a socket, or when something else stands there.
    explicit BrokerSocket(std::string path);
    BrokerSocket(const BrokerSocket&) = delete;
    BrokerSocket& operator=(const BrokerSocket&) = delete;
    ~BrokerSocket();

    /// Ready for reading when a client has connected.
    int descriptor() const { return listener_.get(); }

    /// Takes the next connection, if there is one, reads its request line and sends the answer to it. A
    /// client that falls silent for 2 seconds, or asks for more than 1 MiB, is hung up on.
    void serveOne(const std::function<std::string(std::string_view request)>& answer) const;

  private:
    std::string path_;
    platform::Descriptor listener_;
};

}  // namespace quorvantis::standin
