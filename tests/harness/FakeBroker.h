#pragma once

#include <fcntl.h>
#include <functional>
#include <gtest/gtest.h>
#include <poll.h>
#include <thread>
#include <unistd.h>

#include "broker/BrokerTransport.h"
#include "json/JSONDocument.h"
#include "platform/Descriptors.h"

namespace quorvantis::harness {

/// The broker's end of a connection.
struct BrokerConnection {
    platform::Descriptor socket;
    std::vector<std::string>& requests;

    /// Reads one request line and keeps it.
    std::string receive() {
        std::string request;
        for (char byte; recv(socket.get(), &byte, 1, 0) == 1 && byte != '\n';) request += byte;
        requests.push_back(request);
        return request;
    }
    void send(std::string_view bytes) {
        for (ssize_t count; !bytes.empty(); bytes.remove_prefix(static_cast<std::size_t>(count)))
            if ((count = platform::sendSome(socket, bytes)) < 0) return;  // the other side has heard enough
    }
    /// Reads nothing and says nothing until the other side hangs up.
    void awaitHangUp() {
        // Looks again and again: a poll of macOS that found bytes to read no longer watches for the end.
        pollfd waiting = {.fd = socket.get(), .events = POLLHUP, .revents = 0};
        for (int looks = 0; poll(&waiting, 1, 0) == 0; usleep(20'000))
            ASSERT_LT(++looks, 500) << "it waits for more";
    }
};

/// Returns a new socket bound to the path, which does not listen.
inline platform::Descriptor boundTo(const std::string& path) {
    const auto address = BrokerTransport::address(path).value();
    platform::Descriptor socket = platform::openLocalSocket();
    EXPECT_EQ(bind(socket.get(), address.get(), address.length), 0) << path;
    return socket;
}

/// Listens on a Unix socket and plays the same for each connection, one after the other; the connection ends
/// when the play returns.
class FakeBroker {
  public:
    using Play = std::function<void(BrokerConnection&)>;

    FakeBroker(const std::string& path, Play play) : listener_(boundTo(path)) {
        EXPECT_EQ(listen(listener_.get(), 8), 0);
        fcntl(listener_.get(), F_SETFL, O_NONBLOCK);  // a client may be gone before it is accepted
        thread_ = std::thread([this, play = std::move(play)] {
            while (awaitClient()) serveOne(play);
        });
    }
    FakeBroker(const FakeBroker&) = delete;
    ~FakeBroker() { requests(); }

    /// Stops listening and answers the request lines that came, without their line feeds.
    const std::vector<std::string>& requests() {
        stop_.writing = {};
        if (thread_.joinable()) thread_.join();
        return requests_;
    }

  private:
    /// False when there is none and the play is over.
    bool awaitClient() const {
        pollfd waiting[] = {{listener_.get(), POLLIN, 0}, {stop_.reading.get(), POLLIN, 0}};
        return poll(waiting, 2, -1) > 0 && waiting[0].revents != 0;
    }

    void serveOne(const Play& play) {
        BrokerConnection connection{platform::Descriptor(accept(listener_.get(), nullptr, nullptr)),
                                    requests_};
        if (!connection.socket || !platform::disableBrokenPipeSignal(connection.socket)) return;
        fcntl(connection.socket.get(), F_SETFD, FD_CLOEXEC);
        fcntl(connection.socket.get(), F_SETFL, 0);
        play(connection);
    }

    platform::Descriptor listener_;
    platform::Pipe stop_;  // its writing end is closed to say so
    std::vector<std::string> requests_;
    std::thread thread_;
};

/// Returns a listener that does not accept, and clients that fill its queue.
inline std::vector<platform::Descriptor> fullQueue(const std::string& path) {
    const auto address = BrokerTransport::address(path).value();
    std::vector<platform::Descriptor> sockets;
    EXPECT_EQ(listen(sockets.emplace_back(boundTo(path)).get(), 0), 0);
    for (int failure = 0; failure == 0;) {
        fcntl(sockets.emplace_back(platform::openLocalSocket()).get(), F_SETFL, O_NONBLOCK);
        failure = connect(sockets.back().get(), address.get(), address.length);
    }
    return sockets;
}

/// The request's "requestID"; empty when it has none.
inline std::string requestIDOf(const std::string& request) {
    const auto document = JSONDocument::parse(request);
    return std::string(document ? (*document)["requestID"].string().value_or("") : "");
}

/// A reply line to the request that has these members (an object), and says "ok" if they do not say.
inline std::string replyTo(const std::string& request, std::string_view members) {
    std::string reply = R"({"version":1,"requestID":")" + requestIDOf(request) + "\"";
    if (!JSONDocument::parse(members)->root().find("ok")) reply += R"(,"ok":true)";
    if (members != "{}") reply += ",";
    return reply.append(members.substr(1)).append("\n");
}

}  // namespace quorvantis::harness
