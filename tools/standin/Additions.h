#pragma once

#include <optional>
#include <string>

#include "History.h"

namespace quorvantis::standin {

/// What a caller knows of a copy.
struct CopyHints {
    std::optional<std::string> kind;
    std::optional<std::string> source;  // the application
};

/// Adds a copy to the history: a picture that the decoder knows, or text in UTF-8. Throws std::runtime_error
/// with one line for the user when it is neither, or empty.
void addCopy(History& history, const std::string& bytes, const CopyHints& hints);

/// What standard input holds, up to its end: 256 MiB at most. Throws std::runtime_error.
std::string standardInput();

/// Adds what a file holds as JSON, an array of entries. Returns how many were new. Throws std::runtime_error
/// with the file's path and the key, or the line, where it is wrong.
std::size_t importEntries(History& history, const std::string& path);

/// Writes the history to standard output in that form, an entry a line, the newest first.
void exportEntries(History& history);

}  // namespace quorvantis::standin
