#include <gtest/gtest.h>

#include "integration/AgentManifest.h"
#include "integration/PairingRequestRecord.h"
#include "state/HistoryRecords.h"
#include "state/MCPClientSession.h"
#include "state/PromptHookObservation.h"

namespace quorvantis {

/// The text read as a record and written again; of one that is refused, the path of the value at fault with
/// " missing" or " mistyped".
template <class R>
static std::string reread(const std::string& text) {
    try {
        return encodedRecord(decodedRecord<R>(text));
    } catch (const DecodingError& error) {
        const bool isMissing = std::string_view(error.what()).find("missing") != std::string_view::npos;
        return error.path() + (isMissing ? " missing" : " mistyped");
    }
}

/// A place in a record's text, what to put there, and what is then at fault; nothing when the record is the
/// same as before.
struct Change {
    std::string from, to, fault = "";
};

struct RecordCase {
    std::string (*reread)(const std::string&);
    std::string text;
    std::string optional;  // names of members
    std::vector<Change> changes = {};
};

static const std::vector<RecordCase> records = {
    {reread<AgentManifest>,
     R"({"agent":"codex","installedAt":777000000.123456,"clientID":"client-1","credentialHash":"e3b0",)"
     R"("credentialPath":"\/c","mcpServerName":"quorvantis","mcpExecutablePath":"\/m","hookExecutablePath":"",)"
     R"("managedEntries":["é\n",""],"backupPaths":[],"registrationID":"r"})",
     "registrationID",
     {{"{", R"({"newer":[{}],)"},
      {R"("codex")", R"("codex","agent":7)"},
      {"777000000.123456", " 7.77000000123456e8 "},
      {"777000000.123456", R"("2025-08-16T00:00:00Z")", "installedAt mistyped"},
      {"777000000.123456", "true", "installedAt mistyped"},
      {"777000000.123456", "1e309", "installedAt mistyped"},
      {R"("r")", "7", "registrationID mistyped"},
      {R"("codex")", "null", "agent missing"},
      {R"(["é\n",""])", R"({"0":"x"})", "managedEntries mistyped"},
      {R"("é\n")", R"("a",null)", "managedEntries[1] missing"},
      {"{", "[{", " mistyped"}}},
    {reread<std::vector<AgentManifest>>, "[]", "", {{"[]", "{}", " mistyped"}, {"]", "7]", "[0] mistyped"}}},
    {reread<PairingRequestRecord>,
     R"({"id":"r\/1","agent":"codex","createdAt":1.5,"expiresAt":300,"state":"consumed","clientID":"c",)"
     R"("credential":"s"})",
     "clientID credential",
     {{"consumed", "Consumed", "state mistyped"}, {"\"consumed\"", "4", "state mistyped"}}},
    {reread<std::vector<PairingRequestRecord::State>>,
     R"(["pending","awaitingApproval","approved","denied","consumed"])", ""},
    {reread<HelperEntry>,
     R"({"id":"00000000-0000-4000-8000-00000000000A","createdAt":0.30000000000000004,"primaryKind":"image",)"
     R"("items":[{"id":"00000000-0000-4000-8000-00000000000B","index":-1,"representations":[]}]})",
     "",
     {{"00000000000A", "00000000000a"},
      {"00000000-0000-4000-8000-00000000000A", "000000000000400080000000000000A0", "id mistyped"},
      {R"("index":-1,)", "", "items[0].index missing"},
      {R"("representations":[])", R"("representations":[[]])", "items[0].representations[0] mistyped"}}},
    {reread<HelperRepresentation>,
     R"({"id":"00000000-0000-4000-8000-00000000000C","uti":"public.png","byteCount":9223372036854775807,)"
     R"("sha256":"ab","storagePath":"\/p","inlineText":"\u0000","isOriginalRepresentation":true,)"
     R"("imageMetadata":{"pixelWidth":1,"pixelHeight":2,"originalUTI":"","isOriginalFile":true,)"
     R"("isBitExact":false},"thumbnailPath":"\/t"})",
     "sha256 storagePath inlineText imageMetadata thumbnailPath",
     {{"9223372036854775807", "9223372036854775807.0"},
      {"9223372036854775807", "9223372036854775808", "byteCount mistyped"},
      {R"("pixelHeight":2,)", "", "imageMetadata.pixelHeight missing"}}},
    {reread<HelperImageMetadata>,
     R"({"pixelWidth":640,"pixelHeight":480,"pixelHash":"cd","bitsPerComponent":8,"hasAlpha":false,)"
     R"("colorModel":"RGB","profileName":"sRGB","orientation":6,"frameCount":1,"originalUTI":"public.tiff",)"
     R"("isOriginalFile":false,"isBitExact":true,"conversion":"png"})",
     "pixelHash bitsPerComponent hasAlpha colorModel profileName orientation frameCount conversion",
     {{":6,", ":60e-1,"}, {":6,", ":6.5,", "orientation mistyped"}, {"false", "0", "hasAlpha mistyped"}}},
    {reread<MCPClientSession>,
     R"({"clientID":"c","processID":2147483647,"executablePath":"\/x","clientName":"é","initializedAt":1e-05})",
     "",
     {{"2147483647", "2147483648", "processID mistyped"}}},
    {reread<PromptHookObservation>,
     R"({"clientID":"c","observedAt":0.25,"attachmentCount":-1,"referenceCount":9223372036854775807,"outcome":""})",
     "",
     {{"-1", "true", "attachmentCount mistyped"}}}};

static std::string replaced(std::string text, const Change& change) {
    return text.replace(text.find(change.from), change.from.size(), change.to);
}

TEST(RecordsTest, AreReadAndWritten) {
    for (const auto& [reread, text, optional, changes] : records) {
        EXPECT_EQ(reread(text), text);
        for (const auto& change : changes)
            EXPECT_EQ(reread(replaced(text, change)), change.fault.empty() ? text : change.fault)
                << change.to;
    }
}

TEST(RecordsTest, NeedEachOfTheirMembersButTheOptional) {
    for (const auto& [reread, text, optional, changes] : records) {
        const auto document = JSONDocument::parse(text).value();
        for (const auto [member, value] : document.root().members()) {
            const std::string key(member), quoted = "\"" + key + "\":";
            const std::string outcome = reread(replaced(text, {quoted, "\"another\":"}));
            if ((" " + optional + " ").find(" " + key + " ") == std::string::npos)
                EXPECT_EQ(outcome, key + " missing");
            else
                EXPECT_TRUE(outcome.starts_with("{") && outcome.find(quoted) == outcome.npos) << outcome;
        }
    }
}

}  // namespace quorvantis
