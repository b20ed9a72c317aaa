#include <gtest/gtest.h>

#include "harness/Installation.h"
#include "harness/Words.h"

namespace quorvantis {

using harness::Installation;

static const std::string starts;
static const std::string usage = "Invalid arguments: Expected serve with agent identity.";
static const std::string strangeAgent = "Invalid pairing request: Invalid agent identifier.";
static const std::string mismatch =
    "Invalid pairing request: Client identity does not match the managed registration.";

/// Starts the server with this command line and no input: it fails with the message, or starts.
static void expectStart(const Installation& installation, std::string line, const std::string& message) {
    SCOPED_TRACE(line);
    if (const auto place = line.find("FILE"); place != line.npos)
        line.replace(place, 4, installation.credential);
    harness::ChildProcess server(installation.launch(harness::words(line)));
    server.expectEnd(message == starts ? 0 : 1, message == starts ? "" : message + "\n");
}

TEST(StartUpTest, ReadsTheCommandLine) {
    const std::pair<std::string, std::string> cases[] = {
        {starts, "serve x --credential-file FILE --verbose --client-id client-1 -- --agent codex y"},
        {starts, "serve --agent codex --agent z --client-id client-1 --credential-file FILE --client-id z"},
        {usage, ""},
        {usage, "serve"},
        {usage, "Serve --agent codex --client-id client-1 --credential-file FILE"},
        {usage, "--agent codex serve --client-id client-1 --credential-file FILE"},
        {usage, "serve --agent codex --client-id client-1 --credential-file"},
        {usage, "serve --agent=codex --client-id client-1 --credential-file FILE"},
        {usage, "serve --agent codex --credential-file FILE --client-id"},
        {strangeAgent, "serve --agent --client-id client-1 --credential-file FILE"},
        {strangeAgent, "serve --agent ../Agents/codex --client-id client-1 --credential-file FILE"},
        {"The file “cursor.json” couldn’t be opened because there is no such file.",
         "serve --agent cursor --client-id client-1 --credential-file FILE"},
        {mismatch, "serve --agent codex --client-id Client-1 --credential-file /nowhere"},
        {"The file “nowhere” couldn’t be opened because there is no such file.",
         "serve --agent codex --client-id client-1 --credential-file /nowhere"},
    };
    const Installation installation;
    for (const auto& [message, line] : cases) expectStart(installation, line, message);
}

TEST(StartUpTest, ReportsInOneLineOfUTF8) {
    const Installation installation;
    harness::ChildProcess server(installation.launch(
        {"serve", "--agent", "codex", "--client-id", "client-1", "--credential-file", "/a\xff\nb\033[1m"}));
    server.expectEnd(
        1, "The file “a\uFFFD\uFFFDb\uFFFD[1m” couldn’t be opened because there is no such file.\n");
}

TEST(StartUpTest, ReadsTheCredentialFromWhateverEnds) {
    const std::pair<std::string, std::string> cases[] = {
        {"printf secret/token | exec \"$0\" \"$@\" /dev/stdin", ""},
        {"exec \"$0\" \"$@\" /dev/zero", "The file “zero” couldn’t be opened.\n"},
        {"exec \"$0\" \"$@\" /", "The file “/” couldn’t be opened.\n"}};
    const Installation installation;
    for (const auto& [command, message] : cases) {
        auto launch = installation.launch(
            {"serve", "--agent", "codex", "--client-id", "client-1", "--credential-file"});
        launch.command.insert(launch.command.begin(), {"/bin/sh", "-c", command});
        harness::ChildProcess server(launch);
        server.expectEnd(message.empty() ? 0 : 1, message);
    }
}

TEST(StartUpTest, SurvivesALimitOfFileSizes) {
    const Installation installation;
    auto launch = installation.launch();
    launch.command.insert(launch.command.begin(), {"/bin/sh", "-c", "ulimit -f 0; exec \"$0\" \"$@\""});
    harness::ChildProcess server(launch);
    server.send("{\"id\":1,\"method\":\"initialize\"}\n");
    EXPECT_TRUE(server.readLine());
    server.expectEnd();
    EXPECT_EQ(harness::itemsIn(installation.appSupport + "/Integrations/Agents"), 1u) << "codex.json alone";
}

}  // namespace quorvantis
