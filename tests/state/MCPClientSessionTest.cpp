#include "state/MCPClientSession.h"

#include <ctime>
#include <gtest/gtest.h>
#include <unistd.h>

#include "harness/Installation.h"
#include "json/JSONFiles.h"
#include "platform/FileSystem.h"

namespace quorvantis {

using harness::ChildProcess;
using harness::Installation;

/// Initializes, and answers the record that was written.
static std::optional<MCPClientSession> initialized(ChildProcess& server, const Installation& installation) {
    server.send(R"({"id":1,"method":"initialize","params":{"clientInfo":{"name":"client\/é"}}})"
                "\n");
    EXPECT_TRUE(server.readLine());
    const std::string path = installation.agentFile("codex-mcp-session.json");
    if (!std::filesystem::exists(path)) return std::nullopt;
    EXPECT_EQ(std::filesystem::status(path).permissions(), std::filesystem::perms(0600));
    const auto session = HelperIO::readJSON<MCPClientSession>(path);
    EXPECT_EQ(readFile(path), encodedRecord(session)) << "compact, without a final line feed";
    return session;
}

TEST(MCPClientSessionTest, IsRecordedAtEachInitialize) {
    Installation installation;
    installation.environment.push_back("QUORVANTIS_DIAGNOSTIC=true");
    auto launch = installation.launch();
    const std::string link = installation.folder / "server";
    std::filesystem::create_symlink(launch.command[0], link);
    launch.command[0] = link;
    const Date before = Date::now();
    ChildProcess server(launch);
    const auto first = initialized(server, installation).value();
    const auto second = initialized(server, installation).value();
    EXPECT_EQ(first.clientID, "client-1");
    EXPECT_EQ(first.processID, server.id());
    EXPECT_EQ(first.executablePath, platform::resolvingSymbolicLinks(QUORVANTIS_SERVER));
    EXPECT_EQ(first.clientName, "client/é");
    EXPECT_TRUE(before < first.initializedAt && first.initializedAt < second.initializedAt);
    EXPECT_LT(second.initializedAt, Date::now());
    constexpr auto referenceDate = 978'307'200;  // 2001-01-01T00:00:00Z, in seconds since 1970
    EXPECT_NEAR(second.initializedAt.secondsSinceReferenceDate,
                static_cast<double>(std::time(nullptr) - referenceDate), 5);
    EXPECT_TRUE(second.isRunning());
    server.expectEnd();
    EXPECT_FALSE(second.isRunning());
    for (const pid_t another : {getpid(), 0, -1}) {
        const MCPClientSession session = {.processID = another, .executablePath = second.executablePath};
        EXPECT_FALSE(session.isRunning()) << another;
    }
}

TEST(MCPClientSessionTest, TakesABareCommandForAPathInTheCurrentFolder) {
    const Installation installation;
    auto launch = installation.launch();
    const std::string start = "cd \"$0\" && PATH=${1%/*} && shift && exec quorvantis-mcp \"$@\"";
    launch.command.insert(launch.command.begin(), {"/bin/sh", "-c", start, installation.folder.path()});
    ChildProcess server(launch);
    EXPECT_EQ(initialized(server, installation).value().executablePath,
              platform::resolvingSymbolicLinks(installation.folder.path()) + "/quorvantis-mcp");
}

TEST(MCPClientSessionTest, IsNotWrittenInDiagnosticMode) {
    Installation installation;
    installation.environment.push_back("QUORVANTIS_DIAGNOSTIC=1");
    ChildProcess server(installation.launch());
    EXPECT_FALSE(initialized(server, installation));
}

}  // namespace quorvantis
