#pragma once

#include <array>
#include <span>
#include <string>
#include <string_view>

#include "integration/AgentManifest.h"

namespace quorvantis::doctor {

/// An MCP client.
struct Client {
    std::string_view name;                  // on the command line
    std::string_view title;                 // for people
    std::array<std::string_view, 2> files;  // its configuration below the home folder, in one of these places
    std::string_view place = {};            // where to paste; empty when that is the first of the files
    /// What to paste, to make it start the server for the agent. Ends in a line feed.
    std::string (*text)(const Client&, const AgentManifest&);
    std::string_view section = "mcpServers";  // if the text is JSON, the member that holds the servers
    std::string_view more = {};               // and further members of the server
};

std::span<const Client> clients();

/// Their names, with ", " between them.
std::string clientNames();

}  // namespace quorvantis::doctor
