#pragma once

#include <functional>
#include <gtest/gtest.h>
#include <poll.h>
#include <thread>

#include "broker/BrokerTransport.h"
#include "platform/Sockets.h"
#include "support/JSONDocument.h"

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
        pollfd waiting = {.fd = socket.get(), .events = 0, .revents = 0};
        EXPECT_EQ(poll(&waiting, 1, 10'000), 1) << "it waits for more";
    }
};

/// Listens on a Unix socket and plays the same for each connection, one after the other; the connection ends
/// when the play returns.
class FakeBroker {
  public:
    using Play = std::function<void(BrokerConnection&)>;

    FakeBroker(const std::string& path, Play play) : listener_(platform::openLocalSocket()) {
        const auto address = BrokerTransport::address(path).value();
        EXPECT_EQ(bind(listener_.get(), address.get(), address.length), 0) << path;
        EXPECT_EQ(listen(listener_.get(), 8), 0);
        thread_ = std::thread([this, play = std::move(play)] {
            for (int accepted; (accepted = accept4(listener_.get(), nullptr, nullptr, SOCK_CLOEXEC)) >= 0;) {
                BrokerConnection connection{platform::Descriptor(accepted), requests_};
                play(connection);
            }
        });
    }
    FakeBroker(const FakeBroker&) = delete;
    ~FakeBroker() { requests(); }

    /// Stops listening and answers the request lines that came, without their line feeds.
    const std::vector<std::string>& requests() {
        shutdown(listener_.get(), SHUT_RDWR);
        if (thread_.joinable()) thread_.join();
        return requests_;
    }

  private:
    platform::Descriptor listener_;
    std::vector<std::string> requests_;
    std::thread thread_;
};

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
