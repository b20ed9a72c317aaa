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

constexpr std::size_t maximumRequestSize = 1'048'576;  // bytes
constexpr int backlog = 64;
constexpr timeval timeout = {.tv_sec = 2, .tv_usec = 0};

void removeStaleSocket(const std::string& path) {
    struct stat status;
    if (lstat(path.c_str(), &status) != 0) return;
    if (!S_ISSOCK(status.st_mode)) throw std::runtime_error(path + " is not a socket.");
    if (BrokerClient::isLocalReachable(path))
        throw std::runtime_error("Another application already serves " + path + ".");
    unlink(path.c_str());
}

Descriptor listenAt(const std::string& path) {
    const auto address = BrokerTransport::address(path);
    if (!address) throw std::runtime_error(path + " is too long for a socket: 103 bytes at most.");
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

Descriptor acceptClient(const Descriptor& listener) {
    Descriptor client(accept(listener.get(), nullptr, nullptr));
    if (!client) return client;
    fcntl(client.get(), F_SETFD, FD_CLOEXEC);
    fcntl(client.get(), F_SETFL, 0);
    setsockopt(client.get(), SOL_SOCKET, SO_RCVTIMEO, &timeout, sizeof timeout);
    setsockopt(client.get(), SOL_SOCKET, SO_SNDTIMEO, &timeout, sizeof timeout);
    platform::disableBrokenPipeSignal(client);
    return client;
}

std::string readRequest(const Descriptor& client) {
    std::string request;
    std::array<char, 4096> buffer;
    while (!request.ends_with('\n') && request.size() <= maximumRequestSize) {
        const ssize_t count = read(client.get(), buffer.data(), buffer.size());
        if (count <= 0) return {};
        request.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return request.size() <= maximumRequestSize ? request : std::string();
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
    removeStaleSocket(path_);
    listener_ = listenAt(path_);
}

BrokerSocket::~BrokerSocket() {
    unlink(path_.c_str());
}

void BrokerSocket::serveOne(const std::function<std::string(std::string_view)>& handle) const {
    const Descriptor client = acceptClient(listener_);
    if (!client) return;
    const std::string request = readRequest(client);
    if (!request.empty()) send(client, handle(request));
}

}  // namespace quorvantis::standin
