#include "state/PromptHookObservation.h"

#include "harness/Installation.h"
#include "harness/RecordChecks.h"
#include "support/Files.h"

namespace quorvantis {

TEST(PromptHookObservationTest, IsReadAndWritten) {
    harness::expectRecord<PromptHookObservation>(
        R"({"clientID":"c","observedAt":0.25,"attachmentCount":-1,"referenceCount":9223372036854775807,"outcome":""})",
        {{"-1", "1.5", "attachmentCount mistyped"},
         {"-1", "true", "attachmentCount mistyped"},
         {"9223372036854775807", "9223372036854775808", "referenceCount mistyped"},
         {R"(,"outcome":"")", "", "outcome missing"}});
}

TEST(PromptHookObservationTest, ReplacesTheOneBeforeOrLeavesNothing) {
    const harness::TemporaryFolder folder;
    setenv("QUORVANTIS_TESTING", "1", 1);
    setenv("QUORVANTIS_APP_SUPPORT", (folder / "support").c_str(), 1);
    PromptHookObservation::record("c", "cursor", 1, 2, "first");
    PromptHookObservation::record("d", "cursor", 3, 4, "second");
    const auto path = PromptHookObservation::url("cursor");
    EXPECT_EQ(path, (folder / "support/Integrations/Agents/cursor-hook-state.json"));
    const auto last = decodedRecord<PromptHookObservation>(readFile(path));
    EXPECT_EQ(last.clientID + last.outcome, "dsecond");
    EXPECT_EQ(last.attachmentCount * 10 + last.referenceCount, 34);
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
