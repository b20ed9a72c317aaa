#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include "harness/Installation.h"
#include "support/Streams.h"

namespace quorvantis {

using harness::ChildProcess;
using harness::Installation;

static const std::string ping = "{\"id\":1,\"method\":\"ping\"}\n";

static std::string repeated(const std::string& text, std::size_t times) {
    std::string result;
    while (times-- > 0) result += text;
    return result;
}

TEST(HostileInputTest, LeavesTheNextRequestServed) {
    const std::size_t many = 100'000, mebibyte = 1024 * 1024;
    const std::string start = R"({"id":1,"method":"ping","params":)";
    const std::vector<std::string> ignored = {repeated("[", many) + repeated("]", many),
                                              repeated("{\"id\":", many), std::string(32 * mebibyte, 'x'),
                                              std::string(mebibyte, '\xff'),
                                              start + repeated("[", 512) + repeated("]", 512) + "}"};
    const std::vector<std::string> answered = {
        start + '"' + std::string(32 * mebibyte, 'x') + "\"}", start + std::string(mebibyte, '9') + "}",
        start + "{" + repeated("\"a\":1,", many) + "\"b\":2}" + repeated(",\"method\":\"x\"", many) + "}"};
    const Installation installation;
    ChildProcess server(installation.launch());
    for (const auto& lines : {ignored, answered})
        for (const auto& line : lines) {
            server.send(line + "\n" + ping);
            for (int i = lines == answered ? 2 : 1; i > 0; --i)
                ASSERT_EQ(server.readLine(), R"({"jsonrpc":"2.0","id":1,"result":{}})") << line.substr(0, 40);
        }
}

TEST(StandardStreamsTest, AreReadToTheEndWhenOutputGoesAway) {
    const Installation installation;
    ChildProcess server(installation.launch());
    server.closeOutput();
    server.send(ping + "{\"id\":2,\"method\":\"initialize\"}\n");
    server.expectEnd();
    EXPECT_TRUE(std::filesystem::exists(installation.agentFile("codex-mcp-session.json")));
}

TEST(StandardStreamsTest, MayBeClosedAtTheStart) {
    const Installation installation;
    for (const std::string closed : {"<&-", ">&-", "2>&-", "<&- >&- 2>&-"}) {
        auto launch = installation.launch();
        launch.command.insert(launch.command.begin(), {"/bin/sh", "-c", "exec \"$0\" \"$@\" " + closed});
        ChildProcess server(launch);
        if (!closed.starts_with("<")) server.send(ping);
        EXPECT_EQ(server.readLine().has_value(), closed == "2>&-") << closed;
        server.expectEnd();
    }
}

TEST(StandardStreamsTest, AreReservedTheWrongWayRound) {
    const auto reserve = [] {
        for (const int stream : {0, 1, 2}) close(stream);
        reserveStandardStreams();
        char byte = 'x';
        const bool isTaken = fcntl(2, F_GETFD) >= 0,
                   isUseful = read(0, &byte, 1) >= 0 || write(1, &byte, 1) >= 0;
        _exit(isTaken && !isUseful && write(2, &byte, 1) < 0 ? 0 : 1);
    };
    EXPECT_EXIT(reserve(), testing::ExitedWithCode(0), "");
}

TEST(StandardStreamsTest, LoseNothingOnAFullPipe) {
    const Installation installation;
    ChildProcess server(installation.launch());
    server.send(repeated("{\"id\":1,\"method\":\"tools/list\"}\n", 200));
    for (int waiting = 0, before = -1; waiting == 0 || waiting != before; usleep(20'000)) {
        before = waiting;
        ioctl(server.output(), FIONREAD, &waiting);
    }
    const auto list = server.readLine();
    ASSERT_TRUE(list && list->ends_with("}]}}"));
    for (int i = 1; i < 200; ++i) ASSERT_EQ(server.readLine(), list);
    server.expectEnd();
}

}  // namespace quorvantis
