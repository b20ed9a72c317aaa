#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <sys/un.h>

/// The bytes between this program and the broker: a Unix domain stream socket, one connection per request.
namespace quorvantis::BrokerTransport {

struct Address {
    sockaddr_un name;
    socklen_t length;

    const sockaddr* get() const { return reinterpret_cast<const sockaddr*>(&name); }
};

/// The socket address of a path; nothing for a path of more than 103 bytes, which macOS cannot hold
/// (unix(4)).
std::optional<Address> address(const std::string& socketPath);

/// Sends the request and answers the reply: what arrives up to a line feed, the connection's end, or 2
/// seconds of silence. Throws HelperFailure `unavailable`, also for a reply that is empty or over 1 MiB.
std::string exchange(const std::string& socketPath, std::string_view request);

/// Whether the path is a socket of this user, of mode 0600, at which somebody listens.
bool isReachable(const std::string& socketPath);

}  // namespace quorvantis::BrokerTransport
