#pragma once

#include <string_view>

/// The rule that says which agents may be named on the command line.
namespace quorvantis::AgentIdentifier {

/// True for "codex", "claude-code", "cursor", and "custom-" followed by a UUID in its canonical 36
/// characters.
bool isValid(std::string_view identifier);

}  // namespace quorvantis::AgentIdentifier
