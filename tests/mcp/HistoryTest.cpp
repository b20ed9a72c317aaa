#include <gtest/gtest.h>

#include "harness/Transcript.h"
#include "harness/Words.h"

namespace quorvantis {

TEST(HistoryTest, SendsTheLimitClamped) {
    const std::string call =
        R"("method":"tools/call","params":{"name":"search_clipboard_history","arguments":)";
    const std::string answer = R"(<- {"jsonrpc":"2.0","id":1,"result":{"content":[{"type":"text","text":)"
                               R"("{\"matched\":false,\"items\":[]}"}],)"
                               R"("structuredContent":{"matched":false,"items":[]},"isError":false}})";
    std::string session;
    for (const auto& [sent, limits] :
         {std::pair("1", "1 0 -0.0 0e999999999 -5 -9223372036854775808"),
          {"30", "30 30.0 3e1 3.00E+1 3000e-2 0.0000000000000000000000000003e29"},
          {"100", "100 101 9223372036854775807 9.223372036854775807e18"},
          {"20", R"(9223372036854775808 1e19 1e30 7.5 5e-1 "7" true null [3])"}})
        for (const auto& limit : harness::words(limits))
            session += R"(-> {"id":1,)" + call + R"({"query":"x","limit":)" + limit + "}}}\n" + answer +
                       "\nbroker <- " + R"({"operation":"search_history","query":"x","limit":)" + sent +
                       "}\nbroker -> {}\n";
    harness::playTranscript(session);
}

}  // namespace quorvantis
