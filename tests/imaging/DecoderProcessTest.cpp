#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <thread>
#include <unistd.h>

#include "harness/TemporaryFolder.h"
#include "imaging/AttachmentIdentity.h"
#include "platform/Process.h"
#include "support/HelperIO.h"

namespace quorvantis {

// Of this program alone the decoder is decoder.sh, which stands beside it and does what the picture says.
static const std::string hash(64, '0');
static const std::string record = "4 2 " + hash + "\n";

/// The identities of files with these texts, each with a line feed.
static std::string identities(const std::vector<std::string>& texts, int timeout = 20'000) {
    const harness::TemporaryFolder folder;
    std::vector<std::string> paths;
    for (const auto& text : texts) {
        paths.push_back(folder / std::to_string(paths.size()));
        harness::writeText(paths.back(), text);
    }
    std::string identities;
    for (const auto& identity : HelperIO::attachmentIdentities(paths, std::chrono::milliseconds(timeout)))
        identities += (identity ? encodedRecord(*identity) : "none") + "\n";
    return identities;
}

static std::string plain(const std::string& text) {
    return "{\"sha256\":\"" + HelperIO::sha256(text) + "\"}\n";
}

static std::string decoded(const std::string& text) {
    return "{\"sha256\":\"" + HelperIO::sha256(text) + "\",\"pixelHash\":\"" + hash +
           "\",\"pixelWidth\":4,\"pixelHeight\":2}\n";
}

TEST(DecoderProcessTest, GivesThePictureAndNothingElse) {
    const auto look = [](bool closed) {
        sigset_t signals;
        sigfillset(&signals);
        sigprocmask(SIG_BLOCK, &signals, nullptr);
        std::signal(SIGPIPE, SIG_IGN);
        open("/dev/zero", O_RDONLY);
        if (closed) close(0), close(2);
        _exit(identities({"look"}) == decoded("look") ? 0 : 1);
    };
    EXPECT_EXIT(look(false), testing::ExitedWithCode(0), "");
    EXPECT_EXIT(look(true), testing::ExitedWithCode(0), "");
}

TEST(DecoderProcessTest, TakesOnlyAWholeRecord) {
    EXPECT_EQ(identities({"say " + record}), decoded("say " + record));
    for (const std::string& other :
         {std::string("nonsense\n"), record + "\n", record + record, record.substr(0, record.size() - 1),
          " " + record, "0" + record, "-" + record, "4 02 " + hash + "\n", "4  2 " + hash + "\n",
          "4 2 " + std::string(64, 'A') + "\n", "4 2 " + hash + "a\n", "4 2 " + hash.substr(1) + "\n",
          "0 2 " + hash + "\n", "10001 6000 " + hash + "\n", "4 " + hash + "\n"}) {
        EXPECT_EQ(identities({"say " + other}), plain("say " + other)) << other;
    }
}

TEST(DecoderProcessTest, IsNotWaitedForLongerThanTheCallAllows) {
    const auto start = std::chrono::steady_clock::now();
    const std::vector<std::string> texts = {"hang", "hang", "hang", "hang up", "flood", "hang", "look"};
    std::string expected;
    for (const auto& text : texts) expected += plain(text);
    EXPECT_EQ(identities(texts, 300), expected);
    EXPECT_EQ(identities({"hang up", "flood", "say " + record}),
              plain("hang up") + plain("flood") + decoded("say " + record));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
}

TEST(DecoderProcessTest, WorksBesideOthersAndInOrder) {
    if (std::thread::hardware_concurrency() < 2) GTEST_SKIP() << "one decoder at a time";
    EXPECT_EQ(
        identities({"meet", "say " + record, "say no", "meet", "meet"}),
        decoded("meet") + decoded("say " + record) + plain("say no") + decoded("meet") + decoded("meet"));
}

TEST(DecoderProcessTest, ComesToSmallFilesFirst) {
    std::vector<std::string> texts(5, "hang" + std::string(100, ' '));
    std::string expected;
    for (const auto& text : texts) expected += plain(text);
    texts.push_back("say " + record);
    EXPECT_EQ(identities(texts, 500), expected + decoded(texts.back()));
}

TEST(DecoderProcessTest, TriesAgainAloneWhatFailed) {
    const std::vector<std::string> texts(70, "alone");
    std::string expected;
    for (const auto& text : texts) expected += decoded(text);
    EXPECT_EQ(identities(texts, 100'000), expected);
}

TEST(DecoderProcessTest, TellsNothingOfAFileThatChanges) {
    EXPECT_EQ(identities({"touch"}), plain("touch"));
}

TEST(DecoderProcessTest, NeedNotBeThere) {
    const std::filesystem::path self = *platform::executablePath(getpid()),
                                beside = self.parent_path() / "quorvantis-image-decoder",
                                installed =
                                    self.parent_path() / "../libexec/quorvantis/quorvantis-image-decoder";
    std::filesystem::create_directories(installed.parent_path());
    std::filesystem::rename(beside, installed);
    EXPECT_EQ(identities({"say " + record}), decoded("say " + record));
    std::filesystem::permissions(installed, std::filesystem::perms(0600));
    EXPECT_EQ(identities({"say " + record}), plain("say " + record));
    std::filesystem::permissions(installed, std::filesystem::perms(0700));
    std::filesystem::rename(installed, beside);
}

}  // namespace quorvantis
