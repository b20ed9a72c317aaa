#include <cstdlib>
#include <gtest/gtest.h>

#include "cli/HelperFailure.h"
#include "harness/Installation.h"
#include "harness/Words.h"

namespace quorvantis {

using harness::Base;
using harness::Installation;

static const std::string starts;
static const std::string usage = "Invalid arguments: Expected serve with agent identity.";
static const std::string strangeAgent = "Invalid pairing request: Invalid agent identifier.";
static const std::string mismatch =
    "Invalid pairing request: Client identity does not match the managed registration.";
static const std::string invalid = "Invalid pairing request: Client credential is invalid.";
static const std::string malformed = "Invalid pairing request: Client credential is malformed.";
static const std::string usual = "serve --agent codex --client-id client-1 --credential-file FILE";

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

/// Runs shell commands among the agent's files, with `register` to register the credential as it is.
static void prepare(const Installation& installation, const std::string& commands) {
    const std::string define =
        "C=" + installation.credential +
        R"(; register() { sed -i )"
        R"("s/Hash\":\"[0-9a-f]*/Hash\":\"$(sha256sum < $C | head -c 64)/" codex.json; }; )";
    EXPECT_EQ(std::system(("cd '" + installation.agentFile("") + "'; " + define + commands).c_str()), 0);
}

TEST(StartUpTest, ChecksTheFilesOfTheAgent) {
    const std::string test = "serve --agent test --client-id client-1 --credential-file FILE",
                      custom = "custom-00000000-0000-4000-8000-00000000abcD";
    const struct {
        std::string message, commands, line = usual;
        Base base = Base::testing;
    } cases[] = {
        {"The data couldn’t be read because it isn’t in the correct format.", "> codex.json"},
        {"The data couldn’t be read because it is missing.", "echo {} > codex.json"},
        {"The file “codex.json” couldn’t be opened.", "rm codex.json; mkdir codex.json"},
        {"The file “codex.json” couldn’t be opened because you don’t have permission to view it.",
         "rm codex.json; mkfifo codex.json"},
        {mismatch, "sed -i 's/codex/cursor/' codex.json"},
        {starts, "printf 'token\\n' > $C; register"},
        {starts, "printf '\\357\\273\\277token' > $C; register"},
        {invalid, "printf '\\n' >> $C"},
        {invalid, "printf '\\377' > $C"},
        {invalid, "> $C"},
        {invalid, "sed -i 's/Hash\":\"[0-9a-f]*/\\U&/; s/HASH/Hash/' codex.json"},
        {malformed, "> $C; register"},
        {malformed, "printf 'token\\377' > $C; register"},
        {starts, "sed -i 's/credential\"/elsewhere\"/' codex.json"},
        {starts, "sed 's/codex/test/' codex.json > test.json", test},
        {strangeAgent, "sed 's/codex/test/' codex.json > test.json", test, Base::home},
        {starts, "sed 's/codex/" + custom + "/' codex.json > " + custom + ".json",
         "serve --agent " + custom + " --client-id client-1 --credential-file FILE", Base::home},
        {starts, "true", usual + "//", Base::home},
        {mismatch, "true", "serve --agent codex --client-id client-1 --credential-file /.FILE", Base::home},
        {mismatch, "sed -i 's/credential\"/elsewhere\"/' codex.json", usual, Base::home},
    };
    for (const auto& [message, commands, line, base] : cases) {
        SCOPED_TRACE(commands);
        const Installation installation(base);
        prepare(installation, commands);
        expectStart(installation, line, message);
    }
}

TEST(HelperFailureTest, DescribesItself) {
    EXPECT_STREQ(HelperFailure::invalidArguments("").what(), "Invalid arguments: ");
    EXPECT_STREQ(HelperFailure::configuration(" x").what(), "Agent configuration failed:  x");
    EXPECT_STREQ(HelperFailure::denied().what(), "The Quorvantis pairing request was denied.");
    EXPECT_STREQ(HelperFailure::timedOut().what(), "The Quorvantis pairing request timed out.");
}

}  // namespace quorvantis
