#include "mcp/Tools.h"

#include <algorithm>
#include <array>
#include <exception>

#include "cli/HelperFailure.h"
#include "mcp/History.h"
#include "mcp/IntegrationStatus.h"
#include "mcp/Replies.h"

namespace quorvantis::QuorvantisMCP {

namespace {

constexpr std::array<Tool, 3> catalogue = {{
    {
        .name = "get_integration_status",
        .description =
            "Tells whether the Quorvantis desktop application, which keeps the user's clipboard history and images, "
            "can be reached, and what it lets you read. Returns \"connected\", your \"agent\" identifier and what "
            "the application reports of itself, such as whether you have full-history access. Call it when another "
            "Quorvantis tool failed and you want to tell the user why, not before every call: the other tools say "
            "by themselves what went wrong. If it fails, Quorvantis is not running or does not accept this "
            "connection: ask the user to open Quorvantis; trying again at once does not help.",
        .inputSchema = R"({"type":"object","properties":{},"required":[]})",
        .readOnly = true,
        .onlyAgent = {},
        .handler = getIntegrationStatus,
    },
    {
        .name = "search_clipboard_history",
        .description =
            "Searches what the user has copied on this computer, in any application: text, code, links, file paths. "
            "Choose it when the user refers to something copied earlier (\"the link I copied this morning\"). Returns "
            "\"matched\" and \"items\"; each item has \"entry_id\", \"created_at\", \"kind\", \"preview\" and "
            "\"detail\", and where known \"source_application\", the full \"text\" and \"file_paths\". Long texts "
            "fill your context: ask for a small limit first, and use get_clipboard_item when you already have an "
            "entry_id. If nothing matches, try fewer or other words. If Quorvantis refuses, the user has not given "
            "you access to the whole history: say so and go on without it; do not try again.",
        .inputSchema = R"({"type":"object","properties":{)"
                       R"("query":{"type":"string","minLength":1,"description":)"
                       R"("Words to look for, as they would stand in what was copied. Must not be blank."},)"
                       R"("limit":{"type":"integer","minimum":1,"maximum":100,"default":20,"description":)"
                       R"("The most items to return, 1 to 100; 20 when left out."})"
                       R"(},"required":["query"]})",
        .readOnly = true,
        .onlyAgent = {},
        .handler = searchHistory,
    },
    {
        .name = "get_clipboard_item",
        .description =
            "Returns one entry of the user's clipboard history by its identifier: \"entry_id\", \"created_at\", "
            "\"kind\", \"preview\" and \"detail\", and where known \"source_application\", the full \"text\" and "
            "\"file_paths\". Choose it when you have an entry_id from search_clipboard_history or from the user and "
            "need that one entry; to find entries by their content use search_clipboard_history. A long text fills "
            "your context. If the entry is unavailable, the user has removed it or the identifier is wrong: search "
            "again instead of guessing.",
        .inputSchema = R"({"type":"object","properties":{)"
                       R"("entry_id":{"type":"string","description":)"
                       R"("The entry's identifier, exactly as search_clipboard_history returned it."})"
                       R"(},"required":["entry_id"]})",
        .readOnly = true,
        .onlyAgent = {},
        .handler = getHistoryItem,
    },
}};

void writeDefinition(const Tool& tool, JSONWriter& writer) {
    writer.object("name", tool.name, "description", tool.description,      //
                  "inputSchema", JSONText{std::string(tool.inputSchema)},  //
                  "annotations",
                  jsonObject("readOnlyHint", tool.readOnly, "destructiveHint", false,  //
                             "openWorldHint", false));
}

auto content(std::string_view text) {
    return [text](JSONWriter& writer) {
        writer.beginArray();
        writer.object("type", "text", "text", text);
        writer.endArray();
    };
}

bool replyFailure(JSON id, std::string_view description) {
    return reply(id, jsonObject("content", content(description), "isError", true));
}

JSONText run(std::string_view name, JSON arguments, const BrokerIdentity& identity) {
    const auto tool =
        std::find_if(catalogue.begin(), catalogue.end(), [&](const Tool& t) { return t.name == name; });
    if (tool == catalogue.end()) throw HelperFailure::unavailable("Unknown tool");
    return tool->handler(arguments, identity);
}

}  // namespace

std::span<const Tool> tools() {
    return catalogue;
}

JSONText toolDefinitions(const BrokerIdentity& identity) {
    JSONWriter definitions(Slashes::bare);
    definitions.beginArray();
    for (const Tool& tool : catalogue)
        if (tool.onlyAgent.empty() || tool.onlyAgent == identity.agent) writeDefinition(tool, definitions);
    definitions.endArray();
    return {definitions.take()};
}

bool callTool(JSON id, std::string_view name, JSON arguments, const BrokerIdentity& identity) {
    try {
        const JSONText result = run(name, arguments, identity);
        // Clients compare the text with the structured content: one is the other's exact JSON.
        return reply(
            id, jsonObject("content", content(result.text), "structuredContent", result, "isError", false));
    } catch (const HelperFailure& failure) {
        return replyFailure(id, failure.errorDescription());
    } catch (const std::exception& failure) {
        return replyFailure(id, failure.what());
    }
}

}  // namespace quorvantis::QuorvantisMCP
