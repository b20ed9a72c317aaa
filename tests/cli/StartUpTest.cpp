#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>

#include "cli/HelperFailure.h"
#include "harness/Installation.h"
#include "harness/Words.h"
#include "integration/CredentialValidator.h"

namespace quorvantis {

using harness::Installation;

static const std::string starts;
static const std::string usage = "Invalid arguments: Expected serve with agent identity.";
static const std::string strangeAgent = "Invalid pairing request: Invalid agent identifier.";
static const std::string mismatch =
    "Invalid pairing request: Client identity does not match the managed registration.";
static const std::string invalid = "Invalid pairing request: Client credential is invalid.";
static const std::string malformed = "Invalid pairing request: Client credential is malformed.";

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

/// What the validator says to a caller who gives this credential file.
static std::string outcome(const Installation& installation, const std::string& agent,
                           const std::string& file) {
    CredentialValidator validator;
    validator.paths.agents = installation.agentFile("");
    try {
        EXPECT_EQ(validator.validate(agent, "client-1", file).token, readFile(file));
        return starts;
    } catch (const std::exception& failure) {
        return failure.what();
    }
}

TEST(CredentialValidatorTest, ChecksTheFilesOfTheAgent) {
    const Installation installation;
    const std::string file = installation.agentFile("codex.json"), whole = readFile(file),
                      hash = installation.manifest().credentialHash;
    const auto now = [&] { return outcome(installation, "codex", installation.credential); };
    const struct {
        std::string message, from, to, credential = "secret/token";
    } cases[] = {
        {"The data couldn’t be read because it isn’t in the correct format.", whole, ""},
        {"The data couldn’t be read because it is missing.", whole, "{}"},
        {mismatch, "codex", "cursor"},
        {mismatch, "client-1", "Client-1"},
        {invalid, hash, "4D82E03B9029D0FE72875BF19C8532CA9077DFD6254EF0D91E79581CD522204D"},
        {invalid, "", "", "secret/token\n"},
        {invalid, "", "", "\xff"},
        {invalid, "", "", ""},
        {starts, hash, HelperIO::sha256("token\n"), "token\n"},
        {starts, hash, HelperIO::sha256("\xEF\xBB\xBFtoken"), "\xEF\xBB\xBFtoken"},
        {malformed, hash, HelperIO::sha256(""), ""},
        {malformed, hash, HelperIO::sha256("token\xff"), "token\xff"},
    };
    for (const auto& [message, from, to, credential] : cases) {
        std::string manifest = whole;
        harness::writeText(file, manifest.replace(manifest.find(from), from.size(), to));
        harness::writeText(installation.credential, credential);
        EXPECT_EQ(now(), message) << to << credential;
    }
    std::filesystem::remove(file);
    std::filesystem::create_directory(file);
    EXPECT_EQ(now(), "The file “codex.json” couldn’t be opened.");
    std::filesystem::remove(file);
    mkfifo(file.c_str(), 0600);
    EXPECT_EQ(now(),
              "The file “codex.json” couldn’t be opened because you don’t have permission to view it.");
}

TEST(CredentialValidatorTest, IsLenientInTestingModeAlone) {
    const Installation installation;
    const std::string custom = "custom-00000000-0000-4000-8000-00000000abcD",
                      copy = installation.folder / "copy";
    std::filesystem::copy(installation.credential, copy);
    for (const auto& agent : {custom, std::string("test")}) {
        auto manifest = installation.manifest();
        manifest.agent = agent;
        harness::writeText(installation.agentFile(agent + ".json"), encodedRecord(manifest));
    }
    for (const bool testing : {true, false}) {
        setenv("QUORVANTIS_TESTING", testing ? "1" : "true", 1);
        EXPECT_EQ(outcome(installation, custom, installation.credential), starts);
        EXPECT_EQ(outcome(installation, custom, copy), testing ? starts : mismatch);
        EXPECT_EQ(outcome(installation, "test", installation.credential), testing ? starts : strangeAgent);
    }
    unsetenv("QUORVANTIS_TESTING");
}

TEST(HelperFailureTest, DescribesItself) {
    EXPECT_STREQ(HelperFailure::invalidArguments("").what(), "Invalid arguments: ");
    EXPECT_STREQ(HelperFailure::configuration(" x").what(), "Agent configuration failed:  x");
    EXPECT_STREQ(HelperFailure::denied().what(), "The Quorvantis pairing request was denied.");
    EXPECT_STREQ(HelperFailure::timedOut().what(), "The Quorvantis pairing request timed out.");
}

}  // namespace quorvantis
