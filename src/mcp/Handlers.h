#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "broker/BrokerIdentity.h"
#include "json/JSON.h"
#include "json/JSONWriter.h"

/// The handlers of the tools, and the form in which agents see the broker's replies. A handler takes the
/// call's arguments and the session's identity, makes at most one broker request, and returns the result, an
/// object. It throws what BrokerClient throws, and HelperFailure: `invalidArguments`, always before it makes
/// a request, or `unavailable`.
namespace quorvantis::QuorvantisMCP {

/// Arguments: "attachments", an array of objects that identify an image by file, asset identifier or hashes;
/// "workspace_root"; optionally "session_id" and "turn_id". The broker matches the images and copies the
/// originals into the workspace. Returns "matched", "confidence" and "images".
JSONText resolve(JSON arguments, const BrokerIdentity& identity);

/// Like `resolve`, but with "references", 1 to `maximumReferences` image references, for "attachments".
JSONText resolveReferences(JSON arguments, const BrokerIdentity& identity);

/// Arguments: "asset_id" and "workspace_root", strings. The broker copies the original into the workspace.
/// Returns "workspace_path", "relative_path", "bit_exact" and "conversion".
JSONText materialize(JSON arguments, const BrokerIdentity& identity);

/// Argument: "asset_id", a string. Returns the asset's public payload.
JSONText metadata(JSON arguments, const BrokerIdentity& identity);

/// Ignores its arguments. Fails unless the agent is "cursor". Returns "matched", "images" and "next_step".
JSONText currentPromptAssets(JSON arguments, const BrokerIdentity& identity);

/// Ignores its arguments. Returns "connected" (true), "agent", and the members of the broker's reply without
/// the envelope, their keys in snake_case at every level.
JSONText getIntegrationStatus(JSON arguments, const BrokerIdentity& identity);

/// Arguments: "query", a string that is not blank, and "limit", which is clamped to `minimumLimit` and
/// `maximumLimit`, and is `defaultLimit` unless it is an integer. Returns "matched" and "items".
JSONText searchHistory(JSON arguments, const BrokerIdentity& identity);

/// Argument: "entry_id", a string. Returns the entry's public payload.
JSONText getHistoryItem(JSON arguments, const BrokerIdentity& identity);

inline constexpr std::size_t maximumReferences = 50;
inline constexpr std::size_t identifierLength = 64;  // of assets and hashes, in characters
inline constexpr std::int64_t minimumLimit = 1, defaultLimit = 20, maximumLimit = 100;

/// Converts the attachments of a call of `resolve` for the broker, to an array in the same order. Each is
/// identified by the hashes of its file, by its asset identifier, or by the hashes in its arguments. Empty if
/// there are no attachments, if one of them has no valid identity, or if a file cannot be read.
std::optional<JSONText> attachmentIdentities(JSON::Elements attachments);

/// Writes an image or an entry from the broker's reply as an agent sees it. A member that is missing or has
/// the wrong type gets its default or is left out.
void publicAssetPayload(JSON asset, JSONWriter& writer);
void publicHistoryPayload(JSON entry, JSONWriter& writer);

/// The public payloads of the "images" of a reply, as an array; an empty array unless `images` is an array of
/// objects.
JSONText publicImages(JSON images);

}  // namespace quorvantis::QuorvantisMCP
