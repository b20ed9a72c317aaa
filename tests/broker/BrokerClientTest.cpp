#include "broker/BrokerClient.h"

#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include "broker/BrokerTransport.h"
#include "harness/FakeBroker.h"
#include "harness/TemporaryFolder.h"

namespace quorvantis {

using harness::FakeBroker;
using harness::TemporaryFolder;
using Fields = std::vector<BrokerField>;

static const std::string success, noReply = "Ombrel Link did not respond.",
                                  notSent = "Ombrel Link request failed.";

static std::string outcome(const std::string& socket, const Fields& fields = {}) {
    try {
        const BrokerClient client{{.agent = "codex", .clientID = "client-1", .credential = "s/1\n"}, socket};
        return client.call("status", fields)["ok"].boolean() == true ? success : "not the reply";
    } catch (const std::exception& failure) {
        return failure.what();
    }
}

static std::string outcomeOf(FakeBroker::Play play, const Fields& fields = {}) {
    const TemporaryFolder folder;
    const FakeBroker broker(folder / "s", std::move(play));
    return outcome(folder / "s", fields);
}

/// Sends the pieces one after the other, with the request's identifier for <id>, and hangs up.
static FakeBroker::Play sends(const std::vector<std::string>& pieces) {
    return [=](auto& connection) {
        const std::string id = harness::requestIDOf(connection.receive());
        for (std::string piece : pieces) {
            if (const auto place = piece.find("<id>"); place != piece.npos) piece.replace(place, 4, id);
            connection.send(piece);
            usleep(10'000);
        }
    };
}

static const std::string begun = R"({"version":1,"requestID":"<id>")";

TEST(BrokerClientTest, ChecksTheReply) {
    const std::string invalid = "Quorvantis returned an invalid broker response.",
                      denied = "Quorvantis denied the request.",
                      noJSON = "The data couldn’t be read because it isn’t in the correct format.";
    const std::pair<std::string, std::vector<std::string>> cases[] = {
        {success, {begun + R"(,"ok":true})"}},
        {success, {begun, R"(,"ok":true})", "\n"}},
        {success, {R"({"vers)", R"(ion":1.0,"requestID":"<id>","o)", "k\":true}\n", "more"}},
        {invalid, {R"({"version":"1","requestID":"<id>","ok":true})"}},
        {invalid, {R"({"version":2,"requestID":"<id>","ok":true})"}},
        {invalid, {R"({"version":true,"requestID":"<id>","ok":true})"}},
        {invalid, {R"({"requestID":"<id>","ok":true})"}},
        {invalid, {"[1]"}},
        {invalid, {R"({"version":1,"requestID":"x-<id>","ok":false,"error":"no"})"}},
        {invalid, {R"({"version":1,"ok":false,"error":"no"})"}},
        {denied, {begun + R"(,"ok":"true","error":7})"}},
        {denied, {begun + R"(,"ok":1})"}},
        {"No: “access”/.", {begun + R"(,"ok":false,"error":"No: “access”\/."})"}},
        {"No.", {begun + R"(,"error":"No."})"}},
        {noJSON, {"\n"}},
        {noJSON, {"true\n"}},
        {noJSON, {"\xff"}},
        {noJSON, {begun + R"(,"ok":true}})"}},
        {noJSON, {begun + ",\n", R"("ok":true})"}},
        {noReply, {}},
    };
    for (const auto& [message, reply] : cases)
        EXPECT_EQ(outcomeOf(sends(reply)), message) << testing::PrintToString(reply);
}

TEST(BrokerClientTest, CannotSendToWhoDoesNotListen) {
    const Fields large = {{"field", {"\"" + std::string(4 << 20, 'x') + "\""}}};
    std::signal(SIGPIPE, SIG_DFL);
    EXPECT_EQ(outcomeOf([](auto& connection) { connection.awaitHangUp(); }, large), notSent);
    EXPECT_EQ(outcomeOf([](auto&) {}, large), notSent);
}

TEST(BrokerClientTest, FindsTheSocketByAPathOf103Bytes) {
    const TemporaryFolder folder;
    const std::string longest = folder / std::string(103 - folder.path().size() - 1, 's');
    const FakeBroker broker(longest, sends({begun + R"(,"ok":true})"}));
    chmod(longest.c_str(), 0600);
    EXPECT_EQ(outcome(longest), success);
    EXPECT_TRUE(BrokerClient::isLocalReachable(longest));
    EXPECT_EQ(outcome(longest + "s"), "Ombrel Link socket path is too long.");
}

TEST(BrokerClientTest, SendsTheEnvelopeAndTheFieldsOverIt) {
    const TemporaryFolder folder;
    FakeBroker broker(folder / "s", sends({begun + R"(,"ok":true})"}));
    outcome(folder / "s");
    outcome(folder / "s", {{"agent", {"\"x\""}}, {"paths", {"[\"a/b\",1.0]"}}});
    const std::string first = broker.requests().at(0), second = broker.requests().at(1);
    EXPECT_NE(harness::requestIDOf(first), harness::requestIDOf(second));
    EXPECT_EQ(second, R"({"version":1,"requestID":")" + harness::requestIDOf(second) +
                          R"(","operation":"status",)" +
                          R"("clientID":"client-1","credential":"s\/1\n","agent":"x","paths":["a\/b",1.0]})");
}

TEST(BrokerClientTest, ReachesOnlyAPrivateSocketWithAListener) {
    const TemporaryFolder folder;
    const std::string socket = folder / "s";
    harness::writeText(folder / "file", "");
    chmod((folder / "file").c_str(), 0600);
    std::filesystem::create_symlink(socket, folder / "link");
    {
        const FakeBroker broker(socket, [](auto&) {});
        for (const auto mode : std::initializer_list<mode_t>{0660, 0700, 0400, 0600}) {
            chmod(socket.c_str(), mode);
            EXPECT_EQ(BrokerClient::isLocalReachable(socket), mode == 0600) << mode;
        }
        for (const auto name : {"link", "file", "none"})
            EXPECT_FALSE(BrokerClient::isLocalReachable(folder / name));
        const bool isForeign = chown(socket.c_str(), getpwnam("daemon")->pw_uid, getegid()) == 0;  // by root
        EXPECT_EQ(BrokerClient::isLocalReachable(socket), !isForeign);
    }
    EXPECT_FALSE(BrokerClient::isLocalReachable(socket)) << "nobody listens";
    unlink(socket.c_str());
    const auto queue = harness::fullQueue(socket);
    chmod(socket.c_str(), 0600);
    EXPECT_FALSE(BrokerClient::isLocalReachable(socket)) << "its queue is full";
}

}  // namespace quorvantis
