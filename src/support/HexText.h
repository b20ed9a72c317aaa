#pragma once

#include <string>

#include "platform/SHA256.h"

namespace quorvantis {

/// The digest as 64 lower-case hexadecimal digits.
std::string hexText(const platform::SHA256::Digest& digest);

}  // namespace quorvantis
