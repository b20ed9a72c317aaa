#include "mcp/Tools.h"

#include <gtest/gtest.h>

#include "json/JSONDocument.h"

namespace quorvantis {

static std::string signature(JSON schema);

/// The property as "name:type", "!" when it is required, its limits, default and elements.
static std::string signature(const JSON::Member& property, JSON required) {
    const JSON schema = property.value;
    std::string text = std::string(property.key) + ":" + std::string(schema["type"].string().value());
    for (const JSON key : required.elements())
        if (key.string() == property.key) text += "!";
    for (const auto limit :
         {"minimum", "minLength", "minItems", "maximum", "maxLength", "maxItems", "default"})
        if (const auto value = schema[limit].numberText())
            text += " " + std::string(limit) + "=" + std::string(*value);
    if (const auto items = schema.find("items"))
        text += " of " + std::string((*items)["type"].string().value()) + signature(*items);
    EXPECT_FALSE(schema["description"].string().value().empty());
    return text;
}

static std::string signature(JSON schema) {
    std::string text;
    for (const auto property : schema["properties"].members())
        text += (text.empty() ? "{" : ", ") + signature(property, schema["required"]);
    return text.empty() ? text : text + "}";
}

static std::string flag(JSON hint) {
    return hint.boolean().value() ? "1" : "0";
}

TEST(ToolsTest, AreAnnouncedWithTheirArguments) {
    const std::string files = "workspace_root:string!, session_id:string, turn_id:string}";
    struct Case {
        std::string name, arguments;
        std::string hints;  // read-only, destructive, open world
    };
    const std::vector<Case> cases = {
        {"resolve_image_references", "{references:array! minItems=1 maxItems=50 of string, " + files, "000"},
        {"resolve_current_prompt_images",
         "{attachments:array! minItems=1 of object{file_path:string, asset_id:string, sha256:string, "
         "pixel_hash:string, pixel_width:integer, pixel_height:integer}, " +
             files,
         "000"},
        {"materialize_asset", "{asset_id:string!, workspace_root:string!}", "000"},
        {"get_asset_metadata", "{asset_id:string!}", "100"},
        {"get_integration_status", "", "100"},
        {"search_clipboard_history",
         "{query:string! minLength=1, limit:integer minimum=1 maximum=100 default=20}", "100"},
        {"get_clipboard_item", "{entry_id:string!}", "100"},
        {"get_current_prompt_assets", "", "100"}};
    const auto list = QuorvantisMCP::toolDefinitions({.agent = "cursor"});
    const auto document = JSONDocument::parse(list.text).value();
    ASSERT_EQ(document.root().elements().count(), cases.size());
    auto expected = cases.begin();
    for (const JSON tool : document.root().elements()) {
        const auto& [name, arguments, hints] = *expected++;
        const JSON schema = tool["inputSchema"], annotations = tool["annotations"];
        EXPECT_EQ(tool["name"].string(), name);
        EXPECT_LT(tool["description"].string().value().size(), 1000u) << name;
        EXPECT_EQ(schema["type"].string(), "object") << name;
        EXPECT_TRUE(schema.find("properties") && schema.find("required")) << name;
        EXPECT_EQ(signature(schema), arguments) << name;
        EXPECT_EQ(flag(annotations["readOnlyHint"]) + flag(annotations["destructiveHint"]) +
                      flag(annotations["openWorldHint"]),
                  hints)
            << name;
    }
    EXPECT_NE(list.text.find("The most items to return, 1 to 100; 20 when left out."), std::string::npos);
    EXPECT_NE(list.text.find("as they stand in the user's prompt, 1 to 50."), std::string::npos);
}

TEST(ToolsTest, ShowCurrentPromptAssetsToCursorAlone) {
    const auto list = QuorvantisMCP::toolDefinitions({.agent = "codex"});
    EXPECT_EQ(JSONDocument::parse(list.text).value().root().elements().count(), 7u);
    EXPECT_EQ(list.text.find("get_current_prompt_assets"), std::string::npos);
}

}  // namespace quorvantis
