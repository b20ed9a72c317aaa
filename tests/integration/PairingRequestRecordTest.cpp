#include "integration/PairingRequestRecord.h"

#include "harness/RecordChecks.h"

namespace quorvantis {

TEST(PairingRequestRecordTest, IsReadAndWritten) {
    const std::string issued =
        R"({"id":"r\/1","agent":"codex","createdAt":1.5,"expiresAt":300,"state":"consumed","clientID":"c","credential":"s"})";
    harness::expectRecord<PairingRequestRecord>(issued,
                                                {{"consumed", "Consumed", "state mistyped"},
                                                 {"\"consumed\"", "4", "state mistyped"},
                                                 {"\"consumed\"", "null", "state missing"},
                                                 {"1.5", "\"2001-01-01T00:00:01Z\"", "createdAt mistyped"},
                                                 {"\"s\"", "7", "credential mistyped"},
                                                 {R"("id":"r\/1",)", "", "id missing"}});
    for (const std::string state : {"pending", "awaitingApproval", "approved", "denied"})
        harness::expectRecord<PairingRequestRecord>(
            R"({"id":"1","agent":"a","createdAt":0,"expiresAt":0,"state":")" + state + "\"}",
            {{"}", R"(,"clientID":null,"credential":null})", ""}, {"{", R"({"unknown":["id"],)", ""}});
}

}  // namespace quorvantis
