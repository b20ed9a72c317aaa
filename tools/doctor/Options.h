#pragma once

#include <optional>
#include <string>
#include <vector>

namespace quorvantis::doctor {

/// What the command line asks for.
struct Options {
    std::vector<std::string> agents;
    std::optional<std::string> folder;  // absolute
    std::optional<std::string> client;  // whose configuration to print
    bool wantsJSON = false;
    bool wantsHelp = false;
};

extern const char* const helpText;

/// Throws std::runtime_error with one line for the user.
Options parsedOptions(int count, char** arguments);

}  // namespace quorvantis::doctor
