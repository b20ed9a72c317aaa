#pragma once

#include <optional>
#include <string>
#include <vector>

namespace quorvantis::standin {

/// What the command line asks for. Paths are absolute.
struct Options {
    std::string folder;
    std::string history;
    std::vector<std::string> agents;
    std::string images;                     // the folder of images; empty: none
    std::vector<std::string> promptImages;  // file names in it
    std::string workspace;                  // of the prompt
    std::optional<std::string> addedText;   // to add to the history, instead of serving
    bool refusesHistory = false;
    bool wantsHelp = false;
};

extern const char* const helpText;

/// Throws std::runtime_error with one line for the user.
Options parsedOptions(int count, char** arguments);

}  // namespace quorvantis::standin
