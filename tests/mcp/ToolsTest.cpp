#include "mcp/Tools.h"

#include <gtest/gtest.h>
#include <set>

#include "json/JSONDocument.h"

namespace quorvantis {

/// The first rule that the schema breaks; empty when every client can take it.
static std::string brokenRule(JSON schema) {
    if (schema["type"].string() != "object") return "type";
    if (schema["properties"].kind() != JSON::Kind::object) return "properties";
    if (!schema["required"].isArrayOf(JSON::Kind::string)) return "required";
    for (const JSON key : schema["required"].elements())
        if (!schema["properties"].find(*key.string())) return "required key without property";
    for (const auto [name, property] : schema["properties"].members())
        if (property["description"].string().value_or("").empty() || !property["type"].string())
            return "property " + std::string(name);
    return "";
}

TEST(ToolsTest, HaveDefinitionsThatEveryClientTakes) {
    std::set<std::string_view> names;
    for (const auto& tool : QuorvantisMCP::tools()) {
        SCOPED_TRACE(tool.name);
        EXPECT_TRUE(names.insert(tool.name).second) << "twice";
        EXPECT_LT(tool.description.size(), 1000u);
        EXPECT_EQ(brokenRule(JSONDocument::parse(tool.inputSchema).value().root()), "");
        for (const auto word : {"oneOf", "anyOf", "allOf", "$ref"})
            EXPECT_EQ(tool.inputSchema.find(word), std::string_view::npos) << word;
        const auto list = QuorvantisMCP::toolDefinitions({.agent = std::string(tool.onlyAgent)});
        EXPECT_NE(list.text.find(jsonText(tool.description).text +
                                 ",\"inputSchema\":" + std::string(tool.inputSchema) +
                                 ",\"annotations\":{\"readOnlyHint\":" + (tool.readOnly ? "true" : "false") +
                                 ",\"destructiveHint\":false,\"openWorldHint\":false}}"),
                  std::string::npos);
    }
    EXPECT_TRUE(names.contains("search_clipboard_history"));
}

}  // namespace quorvantis
