#pragma once

#include <string_view>

namespace quorvantis::QuorvantisMCP {

/// The version of everything built here. CMake reads it from this line; the server tells it to its client.
inline constexpr std::string_view version = "1.0.0";

}  // namespace quorvantis::QuorvantisMCP
