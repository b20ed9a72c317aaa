#include "fake/Frameworks.h"

#include <gtest/gtest.h>

#include "SessionSignals.h"
#include "harness/TemporaryFolder.h"
#include "imaging/AttachmentIdentity.h"
#include "platform/ClientSessionNotification.h"
#include "support/Files.h"

namespace quorvantis {
namespace {

using namespace std::string_literals;

class FrameworksTest : public testing::Test {
  protected:
    const long before = fake::liveObjects();
    ~FrameworksTest() override { EXPECT_EQ(fake::liveObjects(), before); }
};

// Two pixels: red, and green at half strength.
const std::string pixels = "\xFF\0\0\xFF"s + "\0\xFF\0\x80"s;

std::string words(const AttachmentIdentity& identity) {
    if (!identity.pixelHash) return "none";
    return std::to_string(*identity.pixelWidth) + " x " + std::to_string(*identity.pixelHeight) + " " +
           identity.pixelHash->substr(0, 16);
}

TEST_F(FrameworksTest, IdentifyPictures) {
    const struct {
        std::string file;
        std::string identity;
    } cases[] = {
        // sha256 of "2x1:rgba8-srgb:" and ff0000ff 00800080; then of "1x2:rgba8-srgb:" and the same.
        {"FAKE 2 1 1\n" + pixels, "2 x 1 49d271d266e97fcd"},
        {"FAKE 2 1 6\n" + pixels, "2 x 1 451fa92a63aadf92"},
        {"", "none"},
        {"no picture", "none"},
        {"FAKE 0 1 1\n" + pixels, "none"},    // no width told
        {"FAKE 1.5 1 1\n" + pixels, "none"},  // not an integer
        {"FAKE -2 -1 1\n" + pixels, "none"},
        {"FAKE 2 2 1\n" + pixels, "none"},  // rows are missing
        {"FAKE 60000001 1 1\n" + pixels, "none"},
        {"FAKE 10001 6000 1\n" + pixels, "none"},
    };
    const harness::TemporaryFolder folder;
    const std::string path = folder / "picture";
    for (const auto& [file, identity] : cases) {
        replaceFile(path, file);
        EXPECT_EQ(words(HelperIO::attachmentIdentity(path)), identity) << file;
    }
}

TEST_F(FrameworksTest, CarryTheNotification) {
    standin::SessionSignals signals;
    EXPECT_FALSE(signals.take());
    platform::postClientSessionChanged("claude-code");
    EXPECT_EQ(fake::takePosted(), "com.quorvantis.client-session-changed claude-code 1\n");
    EXPECT_TRUE(signals.take());
    EXPECT_FALSE(signals.take());
}

}  // namespace
}  // namespace quorvantis
