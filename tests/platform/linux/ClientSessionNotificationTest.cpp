#include "harness/FakeBroker.h"
#include "harness/Installation.h"

namespace quorvantis {

using harness::ChildProcess;
using harness::Installation;

static bool isInitialized(ChildProcess& server) {
    server.send("{\"id\":1,\"method\":\"initialize\"}\n");
    return server.readLine().has_value();
}

TEST(ClientSessionNotificationTest, IsASignalOnTheSessionBus) {
    Installation installation;
    const std::string address = "unix:path=" + (installation.folder / "bus"),
                      name = "com.quorvantis.ClientSession1";
    ChildProcess bus(
        {{"/usr/bin/dbus-daemon", "--session", "--nofork", "--print-address=1", "--address=" + address}});
    ASSERT_TRUE(bus.readLine());
    ChildProcess monitor({{"/usr/bin/dbus-monitor", "--address", address, "interface=" + name}});
    for (int line = 0; line < 4; ++line) ASSERT_TRUE(monitor.readLine());  // about its own names
    installation.environment.push_back("DBUS_SESSION_BUS_ADDRESS=" + address);
    ChildProcess server(installation.launch());
    EXPECT_TRUE(isInitialized(server));
    const std::string signal = monitor.readLine().value();
    EXPECT_NE(signal.find("path=/com/quorvantis/ClientSession1; interface=" + name +
                          "; member=ClientSessionChanged"),
              signal.npos)
        << signal;
    EXPECT_EQ(monitor.readLine(), "   string \"codex\"");
}

TEST(ClientSessionNotificationTest, DoesNotWaitForASilentBus) {
    Installation installation;
    const std::string bus = installation.folder / "bus";
    const harness::FakeBroker silent(bus, [](auto& connection) { connection.awaitHangUp(); });
    installation.environment.push_back("DBUS_SESSION_BUS_ADDRESS=unix:path=" + bus);
    ChildProcess server(installation.launch());
    const double start = Date::now().secondsSinceReferenceDate;
    EXPECT_TRUE(isInitialized(server));
    EXPECT_LT(Date::now().secondsSinceReferenceDate - start, 3);
}

TEST(ClientSessionNotificationTest, GoesToLocalSocketsOnly) {
    const Installation installation;
    const std::string started = installation.folder / "started",
                      program = "unixexec:path=/usr/bin/touch,argv1=" + started;
    for (const auto& address : {program, "unix:path=/nowhere;" + program}) {
        auto launch = installation.launch();
        launch.environment.push_back("DBUS_SESSION_BUS_ADDRESS=" + address);
        ChildProcess server(launch);
        EXPECT_TRUE(isInitialized(server));
        server.expectEnd();
        EXPECT_FALSE(std::filesystem::exists(started)) << address;
    }
}

}  // namespace quorvantis
