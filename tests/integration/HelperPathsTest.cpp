#include "integration/HelperPaths.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include "harness/Words.h"
#include "integration/AgentIdentifier.h"

namespace quorvantis {

TEST(HelperPathsTest, StandBelowTheBaseFolder) {
    setenv("QUORVANTIS_TESTING", "1", 1);
    setenv("QUORVANTIS_APP_SUPPORT", "/q//", 1);
    const HelperPaths paths;
    EXPECT_EQ(paths.requests, "/q/Integrations/PairingRequests");
    EXPECT_EQ(paths.agents, "/q/Integrations/Agents");
    EXPECT_EQ(paths.database, "/q/Database/history.sqlite");
    EXPECT_EQ(paths.socket, "/q/Runtime/quorvantis.sock");
    unsetenv("QUORVANTIS_TESTING");
}

TEST(AgentIdentifierTest, AcceptsTheKnownAgentsAndCustomOnes) {
    for (const auto& text :
         harness::words("codex claude-code cursor custom-01234567-89ab-CDEF-0123-456789abcdef"))
        EXPECT_TRUE(AgentIdentifier::isValid(text)) << text;
    for (const auto& text : harness::words(R"(Codex claude test custom- 01234567-89ab-CDEF-0123-456789abcdef
             Custom-01234567-89ab-CDEF-0123-456789abcdef custom-0123456789abCDEF0123456789abcdef
             custom-01234567-89ab-CDEF-0123-456789abcdef0 custom-01234567-89ab-CDEF-0123-456789abcde
             custom-0123456789ab-CDEF-0123-4567-89abcdef custom-0123456789abCDEF0123456789abcdef----
             custom-g1234567-89ab-CDEF-0123-456789abcdef custom-+1234567-89ab-CDEF-0123-456789abcdef)"))
        EXPECT_FALSE(AgentIdentifier::isValid(text)) << text;
    EXPECT_FALSE(AgentIdentifier::isValid({"codex\0", 6}));
}

}  // namespace quorvantis
