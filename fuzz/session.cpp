// A session: the lines of a client, and a broker's replies to the requests that they cause.

#include "mcp/Session.h"

#include <algorithm>
#include <cassert>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <stdlib.h>
#include <string>
#include <string_view>
#include <unistd.h>

#include "MemoryFile.h"
#include "broker/BrokerTransport.h"
#include "harness/TemporaryFolder.h"
#include "imaging/DecodingBatch.h"
#include "json/JSONDocument.h"
#include "json/JSONWriter.h"
#include "support/HelperFailure.h"
#include "support/UTF8.h"

static std::deque<std::string_view> replies;

// In place of the library's own: a socket, and a process for each image, would take most of the time.

namespace quorvantis {

std::string BrokerTransport::exchange(const std::string&, std::string_view request) {
    const auto document = JSONDocument::parse(request);
    assert(document && request.find('\n') == request.size() - 1);
    if (replies.empty()) throw HelperFailure::unavailable("no reply");
    const std::string_view reply = replies.front();
    replies.pop_front();
    if (!reply.starts_with("{\"") || !reply.ends_with('}')) return std::string(reply);
    // The first of several members with the same key counts.
    std::string whole = R"({"version":1,"requestID":)" + jsonText((*document)["requestID"]).text + ",";
    return whole.append(reply.substr(1, reply.size() - 2)).append(R"(,"ok":true})").append("\n");
}

bool BrokerTransport::isReachable(const std::string&) {
    return false;
}

struct DecodingBatch::Work {};
DecodingBatch::DecodingBatch(std::chrono::milliseconds) {}
DecodingBatch::~DecodingBatch() = default;
void DecodingBatch::start(const platform::Descriptor&, Done done) {
    done({});
}
void DecodingBatch::finish() {}

}  // namespace quorvantis

using namespace quorvantis;

template <class Take>
static void forEachLine(std::string_view text, Take take) {
    for (std::size_t at = 0, end = 0; at < text.size(); at = end + 1) {
        end = std::min(text.find('\n', at), text.size());
        take(text.substr(at, end - at));
    }
}

static void check(std::string_view answer) {
    const auto message = JSONDocument::parse(answer);
    assert(message && isValidUTF8(answer) && (*message)["jsonrpc"].string() == "2.0");
    const JSON result = (*message)["result"];
    if (const auto content = result.find("structuredContent"))
        assert(result["content"].elements().front()["text"].string() == jsonText(*content).text);
}

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    static const harness::TemporaryFolder folder;
    setenv("QUORVANTIS_TESTING", "1", 1);
    setenv("QUORVANTIS_APP_SUPPORT", folder.path().c_str(), 1);
    setenv("DBUS_SESSION_BUS_ADDRESS", "", 1);  // nobody is told of these sessions
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const fuzz::MemoryFile input(STDIN_FILENO), output(STDOUT_FILENO);
    std::string requests;
    replies.clear();
    forEachLine({reinterpret_cast<const char*>(data), size}, [&](std::string_view line) {
        if (line.starts_with("-> ")) requests.append(line.substr(3)).append("\n");
        if (line.starts_with("broker -> ")) replies.push_back(line.substr(10));
    });
    input.replace(requests);
    output.replace("");
    QuorvantisMCP::serve({.agent = "cursor", .clientID = "client-1", .credential = "secret/token"});
    const std::string answers = output.content();
    assert(answers.empty() || answers.ends_with('\n'));
    assert(std::ranges::count(answers, '\n') <= std::ranges::count(requests, '\n'));
    forEachLine(answers, check);
    return 0;
}
