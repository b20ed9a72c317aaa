#include "mcp/Tools.h"

#include <algorithm>
#include <exception>
#include <string_view>

#include "broker/BrokerIdentity.h"
#include "json/JSON.h"
#include "json/JSONWriter.h"
#include "mcp/Replies.h"
#include "support/HelperFailure.h"
#include "support/UTF8.h"

namespace quorvantis::QuorvantisMCP {

namespace {

/// The array "content" with one text, which `writeText` writes.
template <class WriteText>
auto content(WriteText writeText) {
    return [writeText](JSONWriter& writer) {
        writer.beginArray();
        writer.object("type", "text", "text", writeText);
        writer.endArray();
    };
}

void replyFailure(JSON id, std::string_view description) {
    const auto text = [&](JSONWriter& writer) { writer.value(repairedUTF8(description)); };
    reply(id, jsonObject("content", content(text), "isError", true));
}

JSONText run(std::string_view name, JSON arguments, const BrokerIdentity& identity) {
    const auto tool =
        std::find_if(tools().begin(), tools().end(), [&](const Tool& t) { return t.name == name; });
    if (tool == tools().end()) throw HelperFailure::unavailable("Unknown tool");
    return tool->handler(arguments, identity);
}

}  // namespace

void callTool(JSON id, std::string_view name, JSON arguments, const BrokerIdentity& identity) {
    try {
        const JSONText result = run(name, arguments, identity);
        // Clients compare the two, so the text is exactly the JSON of the structured content.
        const auto text = [&](JSONWriter& writer) {
            writer.reserve(result.text.size() * 5 / 2);  // with its escapes, and once more without
            writer.string(result);
        };
        reply(id, jsonObject("content", content(text), "structuredContent", result, "isError", false));
    } catch (const HelperFailure& failure) {
        replyFailure(id, failure.errorDescription());
    } catch (const std::exception& failure) {
        replyFailure(id, failure.what());
    }
}

}  // namespace quorvantis::QuorvantisMCP
