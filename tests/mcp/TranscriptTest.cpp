#include "harness/Transcript.h"

#include <filesystem>
#include <gtest/gtest.h>

#include "support/Files.h"

namespace quorvantis {

using Path = std::filesystem::path;

class TranscriptTest : public testing::TestWithParam<Path> {};

TEST_P(TranscriptTest, IsHeldAsWritten) {
    const std::string text = readFile(GetParam());
    EXPECT_TRUE(text.starts_with("# ")) << "a line of purpose comes first";
    harness::playTranscript(text);
}

static std::vector<Path> transcripts() {
    std::vector<Path> found;
    for (const Path& path : std::filesystem::directory_iterator(QUORVANTIS_TRANSCRIPTS))
        if (path.extension() == ".txt") found.push_back(path);
    return found;
}

INSTANTIATE_TEST_SUITE_P(Session, TranscriptTest, testing::ValuesIn(transcripts()),
                         [](const auto& transcript) { return transcript.param.stem().string(); });

}  // namespace quorvantis
