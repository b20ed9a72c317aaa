#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "History.h"
#include "json/JSON.h"
#include "json/JSONWriter.h"

namespace quorvantis::standin {

/// The broker's operations by name. Each reads the request and writes its results as members of the reply;
/// to refuse, it throws a std::exception whose text is for the agent.
using Operations = std::map<std::string, std::function<void(JSON request, JSONWriter& reply)>, std::less<>>;

/// Adds "search_history" and "get_history_item", which refuse the requests of some agents, and "status". The
/// history must outlive the operations.
void addHistoryOperations(Operations& operations, History& history,
                          const std::set<std::string, std::less<>>& refusedAgents);

/// What "current_prompt_assets" returns, without any hook of a client.
struct CurrentPrompt {
    std::vector<std::string> images;  // each the SHA-256 of a picture; empty when there is no prompt
    std::string workspaceRoot;
};

/// Adds "resolve", "materialize", "metadata" and "current_prompt_assets". The history must outlive the
/// operations.
void addImageOperations(Operations& operations, History& history, const CurrentPrompt& prompt);

}  // namespace quorvantis::standin
