#pragma once

#include <span>
#include <string_view>

#include "broker/BrokerIdentity.h"
#include "json/JSON.h"
#include "json/JSONWriter.h"

namespace quorvantis::QuorvantisMCP {

/// One tool of the catalogue.
struct Tool {
    std::string_view name;
    std::string_view description;  // for the language model that chooses a tool; under 1,000 characters
    std::string_view inputSchema;  // JSON Schema, as compact JSON; it advises the client, the handler checks
    bool readOnly;                 // it writes no file
    std::string_view onlyAgent;    // the one agent that sees it in the list; empty for every agent
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
