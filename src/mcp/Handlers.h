#pragma once

#include <optional>

#include "broker/BrokerIdentity.h"
#include "json/JSON.h"
#include "json/JSONWriter.h"

/// The tools' handlers, and the shapes in which agents see what the broker replies. A handler takes the
/// call's arguments and the session's identity, makes at most one broker request, and returns the result, an
/// object. It throws HelperFailure, `invalidArguments` before any request is made.
namespace quorvantis::QuorvantisMCP {

/// Arguments "attachments", objects that each name an image by file, asset identifier or hashes,
/// "workspace_root", and where known "session_id" and "turn_id". Has the broker match the images and copy the
/// originals into the workspace. Returns "matched", "confidence" and "images".
JSONText resolve(JSON arguments, const BrokerIdentity& identity);

/// The same with "references", 1 to `maximumReferences` image references, instead of "attachments".
JSONText resolveReferences(JSON arguments, const BrokerIdentity& identity);

/// Arguments "asset_id" and "workspace_root", texts. Has the original copied into the workspace and returns
/// its place.
JSONText materialize(JSON arguments, const BrokerIdentity& identity);

/// Argument "asset_id", a text. Returns the asset's public payload.
JSONText metadata(JSON arguments, const BrokerIdentity& identity);

/// Reads no arguments, and serves the agent "cursor" alone. Returns "matched", "images" and "next_step".
JSONText currentPromptAssets(JSON arguments, const BrokerIdentity& identity);

/// Reads no arguments. Returns "connected" true, "agent", and what the broker says of itself, its keys
/// renamed to snake_case at every level.
JSONText getIntegrationStatus(JSON arguments, const BrokerIdentity& identity);

/// Arguments "query", a text that is not blank, and "limit", clamped to the limits below and the default when
/// it is missing or no integer. Returns "matched" and "items".
JSONText searchHistory(JSON arguments, const BrokerIdentity& identity);

/// Argument "entry_id", a text. Returns the entry's public payload.
JSONText getHistoryItem(JSON arguments, const BrokerIdentity& identity);

inline constexpr std::size_t maximumReferences = 50;
inline constexpr std::size_t identifierLength = 64;  // of assets and hashes, in characters
inline constexpr std::int64_t minimumLimit = 1, defaultLimit = 20, maximumLimit = 100;

/// The attachments of a call of `resolve` as the broker is told of them, an array in the same order: each by
/// the hashes of its file, by its asset identifier, or by the hashes that came with it. Empty when there are
/// no attachments, or when one of them names nothing usable or a file that cannot be read.
std::optional<JSONText> attachmentIdentities(JSON::Elements attachments);

/// Writes what an agent sees of an image or an entry that the broker describes. A key that is missing there,
/// or of another type, has a default here or is left out.
void publicAssetPayload(JSON asset, JSONWriter& writer);
void publicHistoryPayload(JSON entry, JSONWriter& writer);

/// The public payloads of an answer's "images" as an array; an empty one unless they are an array of objects.
JSONText publicImages(JSON images);

}  // namespace quorvantis::QuorvantisMCP
