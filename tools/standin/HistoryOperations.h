#pragma once

#include "Broker.h"
#include "HistoryFile.h"

namespace quorvantis::standin {

/// Adds "search_history" and "get_history_item". With `refuses`, they answer as for an agent without access.
void addHistoryOperations(Operations& operations, const HistoryFile& history, bool refuses);

}  // namespace quorvantis::standin
