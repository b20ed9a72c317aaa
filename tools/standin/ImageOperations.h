#pragma once

#include <string>
#include <vector>

#include "Broker.h"
#include "ImageLibrary.h"

namespace quorvantis::standin {

/// The prompt whose images "current_prompt_assets" answers with, as if a client's hook had just confirmed it.
struct CurrentPrompt {
    std::vector<const Asset*> images;  // of the library; none: no prompt
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
