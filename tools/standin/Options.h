#pragma once

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "Additions.h"
#include "Fault.h"

namespace quorvantis::standin {

/// What the command line asks for. Paths are absolute.
struct Options {
    enum class Task { serve, add, import, exportAll, remove, clear, showHelp, showVersion };

    Task task = Task::serve;
    std::string folder;

    // To serve:
    std::vector<std::string> agents;
    std::vector<std::string> images;        // folders of pictures
    std::vector<std::string> promptImages;  // file names in them
    std::string workspace;                  // of the prompt
    std::set<std::string, std::less<>> refusedAgents;
    std::optional<Fault> fault;

    // To change the history:
    std::string subject;  // the text to add, or "-"; the file to import; the identifier of what to remove
    CopyHints hints;
};

extern const char* const helpText;

/// Throws std::runtime_error with one line for the user.
Options parsedOptions(int count, char** arguments);

}  // namespace quorvantis::standin
