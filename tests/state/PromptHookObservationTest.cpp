#include "state/PromptHookObservation.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include "harness/TemporaryFolder.h"
#include "json/JSONFiles.h"

namespace quorvantis {

TEST(PromptHookObservationTest, ReplacesTheOneBeforeOrLeavesNothing) {
    const harness::TemporaryFolder folder;
    setenv("QUORVANTIS_TESTING", "1", 1);
    setenv("QUORVANTIS_APP_SUPPORT", (folder / "support").c_str(), 1);
    PromptHookObservation::record("c", "cursor", 1, 2, "first");
    PromptHookObservation::record("d", "cursor", 3, 4, "second");
    const auto path = PromptHookObservation::url("cursor");
    EXPECT_EQ(path, (folder / "support/Integrations/Agents/cursor-hook-state.json"));
    auto last = HelperIO::readJSON<PromptHookObservation>(path);
    EXPECT_GT(last.observedAt.secondsSinceReferenceDate, 8e8);  // in 2026
    last.observedAt = {};
    EXPECT_EQ(encodedRecord(last), R"({"clientID":"d","observedAt":0,"attachmentCount":3,)"
                                   R"("referenceCount":4,"outcome":"second"})");
    // One that cannot take its place is dropped without a trace.
    std::filesystem::create_directory(PromptHookObservation::url("taken"));
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    PromptHookObservation::record("c", "taken", 1, 2, "dropped");
    EXPECT_EQ(testing::internal::GetCapturedStdout() + testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(harness::itemsIn(folder / "support/Integrations/Agents"), 2);
    EXPECT_TRUE(std::filesystem::is_empty(PromptHookObservation::url("taken")));
    unsetenv("QUORVANTIS_TESTING");
    unsetenv("QUORVANTIS_APP_SUPPORT");
}

}  // namespace quorvantis
