#include "Fault.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <thread>

#include "broker/BrokerTransport.h"

namespace quorvantis::standin {

namespace {

constexpr std::chrono::milliseconds delay(1500);
constexpr std::array<std::string_view, 6> names = {"slow",      "silent",  "hang-up",
                                                   "oversized", "garbage", "wrong-id"};

std::string withAnotherID(std::string reply) {
    constexpr std::string_view key = "\"requestID\":\"";
    const auto place = reply.find(key);
    return place == reply.npos ? reply : reply.insert(place + key.size(), "another-");
}

}  // namespace

std::optional<Fault> faultNamed(std::string_view name) {
    const auto found = std::find(names.begin(), names.end(), name);
    return found == names.end() ? std::nullopt : std::optional(static_cast<Fault>(found - names.begin()));
}

std::optional<std::string> faultyReply(Fault fault, const std::string& reply) {
    switch (fault) {
        case Fault::slow: std::this_thread::sleep_for(delay); return reply;
        case Fault::silent: return std::nullopt;
        case Fault::hangUp: return "";
        case Fault::oversized: return std::string(BrokerTransport::maximumReplySize, ' ') + reply;
        case Fault::garbage: return "{\"version\":1,\xFF\n";
        case Fault::wrongID: return withAnotherID(reply);
    }
    return reply;
}

}  // namespace quorvantis::standin
