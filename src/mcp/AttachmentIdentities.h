#pragma once

#include <optional>

#include "support/JSON.h"
#include "support/JSONWriter.h"

namespace quorvantis::QuorvantisMCP {

/// The attachments of a tool call as the broker is told of them, an array in the same order: each by the
/// hashes of its file, by its asset identifier, or by the hashes that came with it. Nothing when there are
/// none, or one of them says nothing usable or names a file that cannot be read.
std::optional<JSONText> attachmentIdentities(JSON::Elements attachments);

}  // namespace quorvantis::QuorvantisMCP
