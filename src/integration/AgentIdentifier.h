#pragma once

#include <string_view>

/// The names of agents that are valid on the command line.
namespace quorvantis::AgentIdentifier {

/// Returns true for "codex", "claude-code", "cursor", and "custom-" followed by a UUID in its canonical form
/// of 36 characters.
bool isValid(std::string_view identifier);

}  // namespace quorvantis::AgentIdentifier
