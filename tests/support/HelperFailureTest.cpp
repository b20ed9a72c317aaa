#include "support/HelperFailure.h"

#include <gtest/gtest.h>

namespace quorvantis {

TEST(HelperFailureTest, TellsItsCaseMessageAndDescription) {
    const struct {
        HelperFailure failure;
        std::string message, description;
    } cases[] = {
        // in the order of the enumeration
        {HelperFailure::invalidArguments(""), "", "Invalid arguments: "},
        {HelperFailure::invalidRequest("No."), "No.", "Invalid pairing request: No."},
        {HelperFailure::configuration(" x"), " x", "Agent configuration failed:  x"},
        {HelperFailure::unavailable({"x\0y", 3}), {"x\0y", 3}, {"x\0y", 3}},
        {HelperFailure::denied(), "", "The Quorvantis pairing request was denied."},
        {HelperFailure::timedOut(), "", "The Quorvantis pairing request timed out."},
    };
    int position = 0;
    for (const auto& [failure, message, description] : cases) {
        EXPECT_EQ(static_cast<int>(failure.failureCase()), position++) << description;
        EXPECT_EQ(failure.message(), message);
        EXPECT_EQ(failure.errorDescription(), description);
        EXPECT_STREQ(failure.what(), description.c_str());
    }
}

}  // namespace quorvantis
