#include "broker/BrokerTransport.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <cstring>
#include <errno.h>
#include <fcntl.h>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <sys/time.h>
#include <thread>
#include <unistd.h>

#include "broker/BrokerClient.h"
#include "platform/Descriptors.h"
#include "support/HelperFailure.h"

namespace quorvantis::BrokerTransport {

namespace {

using platform::Descriptor;

constexpr std::size_t readSize = 4096;
constexpr timeval timeout = {.tv_sec = 2, .tv_usec = 0};

void setTimeouts(const Descriptor& socket) {
    // Unchecked: the exchange also works without timeouts.
    setsockopt(socket.get(), SOL_SOCKET, SO_RCVTIMEO, &timeout, sizeof timeout);
    setsockopt(socket.get(), SOL_SOCKET, SO_SNDTIMEO, &timeout, sizeof timeout);
}

Descriptor openSocket() {
    Descriptor socket = platform::openLocalSocket();
    if (!socket) throw HelperFailure::unavailable("Ombrel Link transport is unavailable.");
    if (!platform::disableBrokenPipeSignal(socket))
        throw HelperFailure::unavailable("Ombrel Link transport could not be configured.");
    setTimeouts(socket);
    return socket;
}

bool tryConnect(const Descriptor& socket, const Address& address) {
    return connect(socket.get(), address.get(), address.length) == 0;
}

void send(const Descriptor& socket, std::string_view request) {
    while (!request.empty()) {
        const auto sent = platform::sendSome(socket, request);
        if (sent < 0 && errno == EINTR) continue;
        if (sent <= 0) throw HelperFailure::unavailable("Ombrel Link request failed.");
        request.remove_prefix(static_cast<std::size_t>(sent));
    }
}

std::string receive(const Descriptor& socket) {
    std::string reply;
    reply.reserve(maximumReplySize + readSize);  // the pages that it does not need stay untouched
    std::array<char, readSize> buffer;
    while (reply.size() <= maximumReplySize) {
        const ssize_t count = read(socket.get(), buffer.data(), buffer.size());
        if (count <= 0) break;
        reply.append(buffer.data(), static_cast<std::size_t>(count));
        if (reply.ends_with('\n')) break;
    }
    if (reply.empty() || reply.size() > maximumReplySize)
        throw HelperFailure::unavailable("Ombrel Link did not respond.");
    return reply;
}

bool isPrivateSocket(const std::string& path) {
    struct stat status;
    return lstat(path.c_str(), &status) == 0 && S_ISSOCK(status.st_mode) && status.st_uid == geteuid() &&
           (status.st_mode & 0777) == 0600;
}

}  // namespace

std::optional<Address> address(const std::string& socketPath) {
    if (socketPath.size() > maximumSocketPathSize) return std::nullopt;
    Address address = {};
    address.name.sun_family = AF_UNIX;
    std::memcpy(address.name.sun_path, socketPath.c_str(), socketPath.size() + 1);
    address.length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + socketPath.size());
    return address;
}

std::string exchange(const std::string& socketPath, std::string_view request) {
    const Descriptor socket = openSocket();
    const auto broker = address(socketPath);
    if (!broker) throw HelperFailure::unavailable("Ombrel Link socket path is too long.");
    if (!tryConnect(socket, *broker))
        throw HelperFailure::unavailable("Quorvantis is not running or Ombrel Link is unavailable.");
    send(socket, request);
    return receive(socket);
}

bool isReachable(const std::string& socketPath) {
    if (!isPrivateSocket(socketPath)) return false;
    const Descriptor socket = platform::openLocalSocket();
    const auto broker = address(socketPath);
    if (!socket || !broker) return false;
    fcntl(socket.get(), F_SETFL, O_NONBLOCK);
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(timeout.tv_sec);
    while (!tryConnect(socket, *broker)) {
        // On Linux, EAGAIN: the listener's queue is full. No event tells when there is room.
        if (errno != EAGAIN || std::chrono::steady_clock::now() >= deadline) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return true;
}

}  // namespace quorvantis::BrokerTransport
