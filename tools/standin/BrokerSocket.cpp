#include "BrokerSocket.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <errno.h>
#include <fcntl.h>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>
#include <utility>
#include <vector>

#include "broker/BrokerClient.h"
#include "broker/BrokerTransport.h"
#include "platform/Descriptors.h"
#include "support/Files.h"
#include "support/Paths.h"

namespace quorvantis::standin {

namespace {

using platform::Descriptor;
using Clock = std::chrono::steady_clock;

constexpr std::size_t maximumRequestSize = 1'048'576;  // bytes
constexpr int backlog = 64;
constexpr std::size_t maximumClients = 256;
constexpr std::chrono::seconds patience(2);
constexpr std::chrono::minutes neglect(1);
constexpr timeval timeout = {.tv_sec = patience.count(), .tv_usec = 0};

[[noreturn]] void fail(const std::string& path, int code) {
    throw std::runtime_error(path + ": " + FileError::system(code).what());
}

Descriptor lockedFolder(const std::string& path) {
    Descriptor folder(open(parentPath(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder) fail(path, errno);
    if (flock(folder.get(), LOCK_EX | LOCK_NB) != 0 || BrokerClient::isLocalReachable(path))
        throw std::runtime_error("Another application already serves " + path + ".");
    return folder;
}

Descriptor listenAt(const std::string& path) {
    const auto address = BrokerTransport::address(path);
    Descriptor listener = platform::openLocalSocket();
    if (!address || !listener) fail(path, errno);
    const mode_t mask = umask(0177);
    const bool isBound = bind(listener.get(), address->get(), address->length) == 0;
    const int code = errno;
    umask(mask);
    if (!isBound) fail(path, code);
    fcntl(listener.get(), F_SETFL, O_NONBLOCK);  // a client may be gone before it is accepted
    if (::listen(listener.get(), backlog) != 0) fail(path, errno);
    return listener;
}

Descriptor acceptedBy(const Descriptor& listener) {
    Descriptor client(accept(listener.get(), nullptr, nullptr));
    if (!client) return client;
    fcntl(client.get(), F_SETFD, FD_CLOEXEC);
    setsockopt(client.get(), SOL_SOCKET, SO_SNDTIMEO, &timeout, sizeof timeout);
    platform::disableBrokenPipeSignal(client);
    return client;
}

/// Reads what has arrived. Returns false when no more can come.
bool readSome(const Descriptor& client, std::string& request) {
    std::array<char, 65536> buffer;
    const ssize_t count = recv(client.get(), buffer.data(), buffer.size(), MSG_DONTWAIT);
    if (count < 0) return errno == EAGAIN || errno == EINTR;
    request.append(buffer.data(), static_cast<std::size_t>(count));
    return count > 0 && request.size() <= maximumRequestSize;
}

void send(const Descriptor& client, std::string_view reply) {
    while (!reply.empty()) {
        const auto sent = platform::sendSome(client, reply);
        if (sent <= 0) return;
        reply.remove_prefix(static_cast<std::size_t>(sent));
    }
}

}  // namespace

void BrokerSocket::checkLength(const std::string& path) {
    if (!BrokerTransport::address(path))
        throw std::runtime_error(path + " is too long for a socket: 103 bytes at most.");
}

BrokerSocket::BrokerSocket(std::string path) : path_(std::move(path)), lock_(lockedFolder(path_)) {
    struct stat status;
    if (lstat(path_.c_str(), &status) == 0 && !S_ISSOCK(status.st_mode))
        throw std::runtime_error(path_ + " is not a socket.");
}

void BrokerSocket::listen() {
    unlink(path_.c_str());
    listener_ = listenAt(path_);
}

BrokerSocket::~BrokerSocket() {
    if (listener_) unlink(path_.c_str());
}

void BrokerSocket::addTo(std::vector<pollfd>& waiting) const {
    if (clients_.size() < maximumClients) waiting.push_back({listener_.get(), POLLIN, 0});
    for (const Client& client : clients_) waiting.push_back({client.connection.get(), POLLIN, 0});
}

void BrokerSocket::acceptClients() {
    while (clients_.size() < maximumClients) {
        Descriptor connection = acceptedBy(listener_);
        if (!connection) return;
        clients_.push_back({std::move(connection), Clock::now() + patience});
    }
}

void BrokerSocket::serve(const std::function<std::optional<std::string>(std::string_view)>& handle) {
    acceptClients();
    std::erase_if(clients_, [&](Client& client) {
        const bool goesOn = readSome(client.connection, client.request) && Clock::now() < client.deadline;
        if (!client.request.ends_with('\n') || client.request.size() > maximumRequestSize) return !goesOn;
        fcntl(client.connection.get(), F_SETFL, 0);
        const auto reply = handle(client.request);
        if (reply) send(client.connection, *reply);
        client.request.clear();
        client.deadline += neglect;
        return reply.has_value();
    });
}

}  // namespace quorvantis::standin
