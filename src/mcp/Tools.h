#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "broker/BrokerIdentity.h"
#include "json/JSON.h"
#include "json/JSONWriter.h"

namespace quorvantis::QuorvantisMCP {

/// One argument of a tool, or one property of an array's elements. Its JSON Schema advises the client; the
/// handler checks.
struct Argument {
    std::string_view name;
    std::string_view type;         // "string", "integer" or "array"
    std::string_view description;  // without its limits and its full stop where it has a maximum
    bool isRequired = false;
    // Of an integer, of a string's length in characters, or of an array's number of elements.
    std::optional<std::int64_t> minimum = {}, maximum = {};
    std::optional<std::int64_t> defaultValue = {};
    std::string_view elementType = {};                 // of an array
    std::span<const Argument> elementProperties = {};  // of an array of objects
};

/// One tool of the catalogue.
struct Tool {
    std::string_view name;
    std::string_view description;  // for the language model that chooses a tool; under 1,000 characters
    std::span<const Argument> arguments;
    bool readOnly;               // it writes no file
    std::string_view onlyAgent;  // the one agent that sees it in the list; empty for every agent
    /// Takes the call's arguments, any value (what is no object has no keys); answers the result, an object,
    /// or throws.
    JSONText (*handler)(JSON arguments, const BrokerIdentity& identity);
};

/// The tools, a row each, in the order in which they are listed.
std::span<const Tool> tools();

/// The array that answers "tools/list".
JSONText toolDefinitions(const BrokerIdentity& identity);

/// Runs the tool and writes the answer; a failure is a result with "isError" true. False once standard output
/// takes no more.
bool callTool(JSON id, std::string_view name, JSON arguments, const BrokerIdentity& identity);

}  // namespace quorvantis::QuorvantisMCP
