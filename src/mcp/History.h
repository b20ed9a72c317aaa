#pragma once

#include "broker/BrokerIdentity.h"
#include "support/JSON.h"
#include "support/JSONWriter.h"

namespace quorvantis::QuorvantisMCP {

/// Arguments "query", a text that is not blank, and "limit", 1 to 100 (20 when it is missing or no integer).
/// Answers an object with "matched" and "items". Throws HelperFailure; so does `getHistoryItem`.
JSONText searchHistory(JSON arguments, const BrokerIdentity& identity);

/// Argument "entry_id", a text. Answers the entry's public payload.
JSONText getHistoryItem(JSON arguments, const BrokerIdentity& identity);

/// Writes what an agent sees of an entry as the broker describes it. What is missing there, or of another
/// type, has a default here or is left out.
void publicHistoryPayload(JSON entry, JSONWriter& writer);

}  // namespace quorvantis::QuorvantisMCP
