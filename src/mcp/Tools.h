#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "broker/BrokerIdentity.h"
#include "json/JSON.h"
#include "json/JSONWriter.h"

namespace quorvantis::QuorvantisMCP {

/// One argument of a tool, or one property of an array's elements, for the JSON Schema. The schema informs
/// the client; only the handler enforces it.
struct Argument {
    std::string_view name;
    std::string_view type;         // "string", "integer" or "array"
    std::string_view description;  // if there is a maximum, without the limits and the final full stop
    bool isRequired = false;
    // Limits of an integer, of a string's length in characters, or of an array's number of elements.
    std::optional<std::int64_t> minimum = {}, maximum = {};
    std::optional<std::int64_t> defaultValue = {};
    std::string_view elementType = {};  // of an array
    // Of an array of objects. Not a span: those of some libraries take no incomplete type.
    const Argument* elementProperties = nullptr;
    std::size_t elementPropertyCount = 0;
};

/// One tool of the catalogue.
struct Tool {
    std::string_view name;
    std::string_view description;  // for the language model that chooses a tool; under 1,000 characters
    std::span<const Argument> arguments;
    bool readOnly;               // writes no file
    std::string_view onlyAgent;  // the only agent for which the tool is listed; empty for all agents
    /// Takes the call's arguments, which may be any JSON value. Returns the result, an object, or throws.
    JSONText (*handler)(JSON arguments, const BrokerIdentity& identity);
};

/// All tools, in the order in which they are listed.
std::span<const Tool> tools();

/// The definitions of the tools that the agent sees, as the array in the result of "tools/list".
JSONText toolDefinitions(const BrokerIdentity& identity);

/// Runs the tool and writes the response. A failure becomes a result with "isError" true.
void callTool(JSON id, std::string_view name, JSON arguments, const BrokerIdentity& identity);

}  // namespace quorvantis::QuorvantisMCP
