#include "integration/CredentialValidator.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>

#include "harness/FakeBroker.h"
#include "harness/Installation.h"
#include "support/Files.h"

namespace quorvantis {

using harness::Installation;

static const std::string fine;
static const std::string strangeAgent = "Invalid pairing request: Invalid agent identifier.";
static const std::string mismatch =
    "Invalid pairing request: Client identity does not match the managed registration.";
static const std::string invalid = "Invalid pairing request: Client credential is invalid.";
static const std::string malformed = "Invalid pairing request: Client credential is malformed.";
static const std::string noPermission =
    "The file “codex.json” couldn’t be opened because you don’t have permission to view it.";

static std::string inUpperCase(std::string hash) {
    std::transform(hash.begin(), hash.end(), hash.begin(), ::toupper);
    return hash;
}

/// What the validator says to a caller who gives this credential file.
static std::string outcome(const Installation& installation, const std::string& agent,
                           const std::string& file) {
    CredentialValidator validator;
    validator.paths.agents = installation.agentFile("");
    try {
        EXPECT_EQ(validator.validate(agent, "client-1", file).token, readFile(file));
        return fine;
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
        {invalid, hash, inUpperCase(hash)},
        {invalid, "", "", "secret/token\n"},
        {invalid, "", "", "\xff"},
        {invalid, "", "", ""},
        {fine, hash, HelperIO::sha256("token\n"), "token\n"},
        {fine, hash, HelperIO::sha256("\xEF\xBB\xBFtoken"), "\xEF\xBB\xBFtoken"},
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
    EXPECT_EQ(now(), noPermission);
    std::filesystem::remove(file);
    const harness::FakeBroker broker(file, [](auto&) {});
    EXPECT_EQ(now(), noPermission);
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
        EXPECT_EQ(outcome(installation, custom, installation.credential), fine);
        EXPECT_EQ(outcome(installation, custom, copy), testing ? fine : mismatch);
        EXPECT_EQ(outcome(installation, "test", installation.credential), testing ? fine : strangeAgent);
    }
    unsetenv("QUORVANTIS_TESTING");
}

}  // namespace quorvantis
