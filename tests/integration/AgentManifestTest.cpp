#include "integration/AgentManifest.h"

#include "harness/RecordChecks.h"

namespace quorvantis {

TEST(AgentManifestTest, IsReadAndWritten) {
    const std::string golden =
        R"({"agent":"codex","installedAt":777000000.123456,"clientID":"client-1","credentialHash":"e3b0",)"
        R"("credentialPath":"\/c","mcpServerName":"quorvantis","mcpExecutablePath":"\/m","hookExecutablePath":"",)"
        R"("managedEntries":["é\n",""],"backupPaths":[],"registrationID":"r"})";
    const std::vector<harness::Change> changes = {
        {"{", R"({"newer":[{}],)", ""},
        {R"("codex")", R"("codex","agent":7)", ""},
        {"777000000.123456", " 7.77000000123456e8 ", ""},
        {R"("agent":"codex",)", "", "agent missing"},
        {R"("backupPaths":[],)", "", "backupPaths missing"},
        {R"("client-1")", "null", "clientID missing"},
        {"777000000.123456", R"("2025-08-16T00:00:00Z")", "installedAt mistyped"},
        {"777000000.123456", "true", "installedAt mistyped"},
        {"777000000.123456", "1e309", "installedAt mistyped"},
        {R"("r")", "7", "registrationID mistyped"},
        {R"(["é\n",""])", R"({"0":"x"})", "managedEntries mistyped"},
        {R"("é\n")", R"("a",null)", "managedEntries[1] missing"},
        {golden, "[" + golden + "]", " mistyped"},
        {golden, golden.substr(1), " mistyped"},
    };
    harness::expectRecord<AgentManifest>(golden, changes);
    const std::string none = golden.substr(0, golden.rfind(',')) + "}";
    harness::expectRecord<AgentManifest>(none, {{"[]}", R"([],"registrationID":null})", ""}});
}

}  // namespace quorvantis
