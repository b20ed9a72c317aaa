#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace quorvantis {

/// The environment variable's value at this moment; nothing when it is not set.
inline std::optional<std::string> environmentVariable(const char* name) {
    const char* value = std::getenv(name);
    return value ? std::optional<std::string>(value) : std::nullopt;
}

}  // namespace quorvantis
