#include <algorithm>
#include <span>
#include <string>

#include "broker/BrokerIdentity.h"
#include "json/JSONWriter.h"
#include "mcp/Tools.h"

namespace quorvantis::QuorvantisMCP {

namespace {

void writeProperties(std::span<const Argument> arguments, JSONWriter& writer);

/// The description repeats the limits, because some clients drop those of the schema.
std::string description(const Argument& argument) {
    std::string text(argument.description);
    if (!argument.maximum) return text;
    text += ", " + std::to_string(argument.minimum.value_or(0)) + " to " + std::to_string(*argument.maximum);
    if (argument.defaultValue) text += "; " + std::to_string(*argument.defaultValue) + " when left out";
    return text + ".";
}

void writeElementType(const Argument& argument, JSONWriter& writer) {
    writer.key("items");
    writer.beginObject();
    writer.members("type", argument.elementType);
    if (argument.elementProperties)
        writeProperties({argument.elementProperties, argument.elementPropertyCount}, writer);
    writer.endObject();
}

void writeLimits(const Argument& argument, JSONWriter& writer) {
    const bool isArray = argument.type == "array", isText = argument.type == "string";
    if (argument.minimum)
        writer.members(isArray ? "minItems" : isText ? "minLength" : "minimum", *argument.minimum);
    if (argument.maximum)
        writer.members(isArray ? "maxItems" : isText ? "maxLength" : "maximum", *argument.maximum);
    if (argument.defaultValue) writer.members("default", *argument.defaultValue);
}

void writeProperty(const Argument& argument, JSONWriter& writer) {
    writer.key(argument.name);
    writer.beginObject();
    writer.members("type", argument.type);
    if (!argument.elementType.empty()) writeElementType(argument, writer);
    writeLimits(argument, writer);
    writer.members("description", description(argument));
    writer.endObject();
}

/// The members "properties" and "required" of a schema.
void writeProperties(std::span<const Argument> arguments, JSONWriter& writer) {
    writer.key("properties");
    writer.beginObject();
    for (const Argument& argument : arguments) writeProperty(argument, writer);
    writer.endObject();
    writer.key("required");
    writer.beginArray();
    for (const Argument& argument : arguments)
        if (argument.isRequired) writer.value(argument.name);
    writer.endArray();
}

auto inputSchema(const Tool& tool) {
    return [&tool](JSONWriter& writer) {
        writer.beginObject();
        writer.members("type", "object");
        writeProperties(tool.arguments, writer);
        writer.endObject();
    };
}

void writeDefinition(const Tool& tool, JSONWriter& writer) {
    writer.object("name", tool.name, "description", tool.description,  //
                  "inputSchema", inputSchema(tool), "annotations",
                  jsonObject("readOnlyHint", tool.readOnly, "destructiveHint", false,  //
                             "openWorldHint", false));
}

}  // namespace

JSONText toolDefinitions(const BrokerIdentity& identity) {
    JSONWriter definitions(Slashes::bare);
    definitions.beginArray();
    for (const Tool& tool : tools())
        if (tool.onlyAgent.empty() || tool.onlyAgent == identity.agent) writeDefinition(tool, definitions);
    definitions.endArray();
    return {definitions.take()};
}

}  // namespace quorvantis::QuorvantisMCP
