#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <sys/un.h>

/// Exchanges bytes with the broker over a Unix domain stream socket, one connection per request.
namespace quorvantis::BrokerTransport {

/// In bytes, the line feed included.
inline constexpr std::size_t maximumReplySize = 1'048'576;

struct Address {
    sockaddr_un name;
    socklen_t length;

    const sockaddr* get() const { return reinterpret_cast<const sockaddr*>(&name); }
};

/// The socket address of a path; empty if the path is longer than `maximumSocketPathSize`.
std::optional<Address> address(const std::string& socketPath);

/// Sends the request and returns the reply. The reply ends when a read ends in a line feed, at the end of the
/// connection, or when nothing arrives for 2 seconds. Throws HelperFailure `unavailable`, also if the reply
/// is empty or exceeds 1 MiB.
std::string exchange(const std::string& socketPath, std::string_view request);

/// Whether the path is a socket of this user, of mode 0600, that accepts connections.
bool isReachable(const std::string& socketPath);

}  // namespace quorvantis::BrokerTransport
