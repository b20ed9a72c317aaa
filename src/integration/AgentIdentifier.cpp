#include "integration/AgentIdentifier.h"

#include <string_view>

#include "json/UUID.h"

namespace quorvantis::AgentIdentifier {

bool isValid(std::string_view identifier) {
    if (identifier == "codex" || identifier == "claude-code" || identifier == "cursor") return true;
    constexpr std::string_view customPrefix = "custom-";
    return identifier.starts_with(customPrefix) && UUID::parse(identifier.substr(customPrefix.size()));
}

}  // namespace quorvantis::AgentIdentifier
