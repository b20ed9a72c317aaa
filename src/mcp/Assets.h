#pragma once

#include "broker/BrokerIdentity.h"
#include "support/JSON.h"
#include "support/JSONWriter.h"

namespace quorvantis::QuorvantisMCP {

// The tools for single images of the current prompt. Each answers an object, and throws HelperFailure.

/// Arguments "asset_id" and "workspace_root", texts. Has the original copied into the workspace and says
/// where it is.
JSONText materialize(JSON arguments, const BrokerIdentity& identity);

/// Argument "asset_id", a text. Answers the asset's public payload.
JSONText metadata(JSON arguments, const BrokerIdentity& identity);

/// Takes no arguments, and serves the agent "cursor" alone. Answers "matched", "images" and "next_step".
JSONText currentPromptAssets(JSON arguments, const BrokerIdentity& identity);

/// Writes what an agent sees of an image as the broker describes it. What is missing there, or of another
/// type, has a default here or is left out.
void publicAssetPayload(JSON asset, JSONWriter& writer);

/// The public payloads of an answer's "images" as an array, empty when they are no array of objects.
JSONText publicImages(JSON images);

}  // namespace quorvantis::QuorvantisMCP
