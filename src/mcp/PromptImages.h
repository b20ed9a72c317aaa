#pragma once

#include "broker/BrokerIdentity.h"
#include "support/JSON.h"
#include "support/JSONWriter.h"

namespace quorvantis::QuorvantisMCP {

/// Arguments "attachments", objects that each name an image by file, asset identifier or hashes,
/// "workspace_root", and where known "session_id" and "turn_id". Has the broker match the images and copy the
/// originals into the workspace. Answers "matched", "confidence" and "images". Throws HelperFailure.
JSONText resolve(JSON arguments, const BrokerIdentity& identity);

/// The same with "references", 1 to 50 image references, in the place of "attachments".
JSONText resolveReferences(JSON arguments, const BrokerIdentity& identity);

}  // namespace quorvantis::QuorvantisMCP
