#include <chrono>
#include <filesystem>
#include <gtest/gtest.h>
#include <thread>
#include <unistd.h>

#include "harness/TemporaryFolder.h"
#include "imaging/OtherRoles.h"
#include "platform/Process.h"
#include "support/HelperIO.h"

namespace quorvantis {

using harness::writeText;

/// A folder with a copy of this program, which finds its decoder, also this program, beside itself.
class DecoderProcessTest : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        const std::filesystem::path self = *platform::executablePath(getpid());
        folder = std::make_unique<harness::TemporaryFolder>(self.parent_path());
        for (const auto name : {"program", "quorvantis-image-decoder"})
            std::filesystem::copy_file(self, *folder / name);
    }
    static void TearDownTestSuite() { folder.reset(); }

    /// What is printed for files of these texts, each with its line feed.
    static std::string identities(const std::vector<std::string>& texts, int patience = 20'000,
                                  const std::string& redirections = "") {
        std::string command =
            "exec " + HelperIO::shellQuoted(*folder / "program") + " --identify " + std::to_string(patience);
        for (std::size_t i = 0; i < texts.size(); ++i) {
            const auto path = *folder / "picture" + std::to_string(i);
            writeText(path, texts[i]);
            command += " " + HelperIO::shellQuoted(path);
        }
        command += redirections;
        FILE* output = popen(command.c_str(), "r");
        std::string printed;
        for (int c; (c = fgetc(output)) != EOF;) printed += static_cast<char>(c);
        pclose(output);
        return printed;
    }
    static std::string plain(const std::string& text) {
        return "{\"sha256\":\"" + HelperIO::sha256(text) + "\"}\n";
    }
    static std::string decoded(const std::string& text) {
        return "{\"sha256\":\"" + HelperIO::sha256(text) + "\",\"pixelHash\":\"" + answerHash +
               "\",\"pixelWidth\":4,\"pixelHeight\":2}\n";
    }

    static std::unique_ptr<harness::TemporaryFolder> folder;
};

std::unique_ptr<harness::TemporaryFolder> DecoderProcessTest::folder;

TEST_F(DecoderProcessTest, GivesThePictureAndNothingElse) {
    EXPECT_EQ(identities({"look"}), decoded("look"));
    EXPECT_EQ(identities({"look"}, 20'000, " <&- 2>&-"), decoded("look"));
}

TEST_F(DecoderProcessTest, TakesOnlyAWholeRecord) {
    EXPECT_EQ(identities({"say " + answer}), decoded("say " + answer));
    const std::string upperCase(64, 'A');
    for (const std::string& record :
         {std::string("nonsense\n"), answer + "\n", answer + answer, answer.substr(0, answer.size() - 1),
          " " + answer, "0" + answer, "-" + answer, "4 02 " + answerHash + "\n", "4  2 " + answerHash + "\n",
          "4 2 " + upperCase + "\n", "4 2 " + answerHash + "a\n", "4 2 " + answerHash.substr(1) + "\n",
          "0 2 " + answerHash + "\n", "10001 6000 " + answerHash + "\n", "4 " + answerHash + "\n"}) {
        EXPECT_EQ(identities({"say " + record}), plain("say " + record)) << record;
    }
}

TEST_F(DecoderProcessTest, IsNotWaitedForLongerThanTheCallAllows) {
    const auto start = std::chrono::steady_clock::now();
    const std::vector<std::string> texts = {"hang", "hang", "hang", "hang up", "flood", "hang", "look"};
    std::string expected;
    for (const auto& text : texts) expected += plain(text);
    EXPECT_EQ(identities(texts, 300), expected);
    EXPECT_EQ(identities({"hang up", "flood", "look"}), plain("hang up") + plain("flood") + decoded("look"));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
}

TEST_F(DecoderProcessTest, WorksBesideOthersAndInOrder) {
    if (std::thread::hardware_concurrency() < 2) GTEST_SKIP() << "one decoder at a time";
    EXPECT_EQ(identities({"meet", "look", "say no", "meet", "meet"}),
              decoded("meet") + decoded("look") + plain("say no") + decoded("meet") + decoded("meet"));
}

TEST_F(DecoderProcessTest, TellsNothingOfAFileThatChanges) {
    EXPECT_EQ(identities({"touch"}), plain("touch"));
}

TEST_F(DecoderProcessTest, NeedNotBeThere) {
    std::filesystem::rename(*folder / "quorvantis-image-decoder", *folder / "away");
    EXPECT_EQ(identities({"look"}), plain("look"));
    const auto program = *folder / "bin/program";
    std::filesystem::create_directories(*folder / "bin");
    std::filesystem::create_directories(*folder / "libexec/quorvantis");
    std::filesystem::rename(*folder / "away", *folder / "libexec/quorvantis/quorvantis-image-decoder");
    std::filesystem::rename(*folder / "program", program);
    std::filesystem::create_symlink(program, *folder / "program");
    EXPECT_EQ(identities({"look"}), decoded("look"));
}

}  // namespace quorvantis
