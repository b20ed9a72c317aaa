#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "HistoryFile.h"
#include "ImageLibrary.h"
#include "json/JSON.h"
#include "json/JSONWriter.h"

namespace quorvantis::standin {

/// The broker's operations by name. Each reads the request and writes its results as members of the reply;
/// to refuse, it throws a std::exception whose text is for the agent.
using Operations = std::map<std::string, std::function<void(JSON request, JSONWriter& reply)>, std::less<>>;

/// Adds "search_history" and "get_history_item", which refuse every request when `isRefused`. The history
/// must outlive the operations.
void addHistoryOperations(Operations& operations, const HistoryFile& history, bool isRefused);

/// What "current_prompt_assets" returns, without any hook of a client.
struct CurrentPrompt {
    std::vector<const Asset*> images;  // in the library; empty when there is no prompt
    std::string workspaceRoot;
};

/// The prompt with the images of these file names. Throws std::runtime_error with one line for the user when
/// the library lacks one.
CurrentPrompt promptWith(const std::vector<std::string>& names, const ImageLibrary& library,
                         const std::string& workspaceRoot);

/// Adds "resolve", "materialize", "metadata" and "current_prompt_assets". The library must outlive the
/// operations.
void addImageOperations(Operations& operations, const ImageLibrary& library, const CurrentPrompt& prompt);

}  // namespace quorvantis::standin
