#include "BrokerSocket.h"

#include <array>
#include <cstddef>
#include <errno.h>
#include <fcntl.h>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>
#include <utility>

#include "broker/BrokerClient.h"
#include "broker/BrokerTransport.h"
#include "platform/Descriptors.h"
#include "support/Files.h"

namespace quorvantis::standin {

namespace {

using platform::Descriptor;

constexpr std::size_t longestRequest = 1'048'576;
constexpr int backlog = 64;
constexpr timeval patience = {.tv_sec = 2, .tv_usec = 0};

void removeLeftBehind(const std::string& path) {
    struct stat status;
    if (lstat(path.c_str(), &status) != 0) return;
    if (!S_ISSOCK(status.st_mode)) throw std::runtime_error(path + " is in the way: it is no socket.");
    if (BrokerClient::isLocalReachable(path))
        throw std::runtime_error("Another application serves " + path + " already.");
    unlink(path.c_str());
}

Descriptor listenAt(const std::string& path) {
    const auto address = BrokerTransport::address(path);
    if (!address) throw std::runtime_error(path + " is too long for a socket: 103 bytes at the most.");
    Descriptor listener = platform::openLocalSocket();
    if (!listener) throw FileError::system(errno);
    const mode_t mask = umask(0177);
    const bool isBound = bind(listener.get(), address->get(), address->length) == 0;
    const int code = errno;
    umask(mask);
    if (!isBound) throw FileError::system(code);
    fcntl(listener.get(), F_SETFL, O_NONBLOCK);  // a client may be gone before it is accepted
    if (listen(listener.get(), backlog) != 0) throw FileError::system(errno);
    return listener;
}

Descriptor accepted(const Descriptor& listener) {
    Descriptor client(accept(listener.get(), nullptr, nullptr));
    if (!client) return client;
    fcntl(client.get(), F_SETFD, FD_CLOEXEC);
    fcntl(client.get(), F_SETFL, 0);
    setsockopt(client.get(), SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    setsockopt(client.get(), SOL_SOCKET, SO_SNDTIMEO, &patience, sizeof patience);
    platform::disableBrokenPipeSignal(client);
    return client;
}

std::string requestOf(const Descriptor& client) {
    std::string request;
    std::array<char, 4096> buffer;
    while (!request.ends_with('\n') && request.size() <= longestRequest) {
        const ssize_t count = read(client.get(), buffer.data(), buffer.size());
        if (count <= 0) return {};
        request.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return request.size() <= longestRequest ? request : std::string();
}

void send(const Descriptor& client, std::string_view reply) {
    while (!reply.empty()) {
        const auto sent = platform::sendSome(client, reply);
        if (sent <= 0) return;
        reply.remove_prefix(static_cast<std::size_t>(sent));
    }
}

}  // namespace

BrokerSocket::BrokerSocket(std::string path) : path_(std::move(path)) {
    removeLeftBehind(path_);
    listener_ = listenAt(path_);
}

BrokerSocket::~BrokerSocket() {
    unlink(path_.c_str());
}

void BrokerSocket::serveOne(const std::function<std::string(std::string_view)>& answer) const {
    const Descriptor client = accepted(listener_);
    if (!client) return;
    const std::string request = requestOf(client);
    if (!request.empty()) send(client, answer(request));
}

}  // namespace quorvantis::standin
