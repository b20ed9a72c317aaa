#include "support/HelperFailure.h"

#include <gtest/gtest.h>

namespace quorvantis {

TEST(HelperFailureTest, TellsItsCaseMessageAndDescription) {
    using enum HelperFailure::Case;
    const struct {
        HelperFailure failure;
        HelperFailure::Case expected;
        std::string message, description;
    } cases[] = {
        {HelperFailure::invalidArguments(""), invalidArguments, "", "Invalid arguments: "},
        {HelperFailure::invalidRequest("No."), invalidRequest, "No.", "Invalid pairing request: No."},
        {HelperFailure::configuration(" x"), configuration, " x", "Agent configuration failed:  x"},
        {HelperFailure::unavailable({"x\0y", 3}), unavailable, {"x\0y", 3}, {"x\0y", 3}},
        {HelperFailure::denied(), denied, "", "The Quorvantis pairing request was denied."},
        {HelperFailure::timedOut(), timedOut, "", "The Quorvantis pairing request timed out."},
    };
    int position = 0;
    for (const auto& [failure, expected, message, description] : cases) {
        EXPECT_EQ(failure.failureCase(), expected) << description;
        EXPECT_EQ(static_cast<int>(failure.failureCase()), position++);
        EXPECT_EQ(failure.message(), message);
        EXPECT_EQ(failure.errorDescription(), description);
        EXPECT_STREQ(failure.what(), description.c_str());
    }
}

}  // namespace quorvantis
