#pragma once

#include <string>

#include "Broker.h"
#include "ImageLibrary.h"

namespace quorvantis::standin {

/// The prompt whose images "current_prompt_assets" answers with, as if a client's hook had just confirmed it.
struct CurrentPrompt {
    std::vector<std::string> images;  // file names in the library's folder; none: no prompt
    std::string workspaceRoot;
};

/// Adds "resolve", "materialize", "metadata" and "current_prompt_assets". The library must outlive the
/// operations.
void addImageOperations(Operations& operations, const ImageLibrary& library, const CurrentPrompt& prompt);

}  // namespace quorvantis::standin
