#pragma once

#include <functional>
#include <getopt.h>
#include <span>
#include <string>
#include <vector>

namespace quorvantis {

/// Reads a command line's options, each by its long name or by its letter. `take` gets the letter and the
/// value, null where an option has none. Returns the other arguments. `options` ends with a row of zeros.
///
/// Throws std::runtime_error with one line for the user, also for an empty value.
std::vector<std::string> readOptions(int count, char** arguments, std::span<const option> options,
                                     const std::function<void(int letter, const char* value)>& take);

/// Throws std::runtime_error: the message, and where to find help.
[[noreturn]] void failWithHint(const std::string& message);

}  // namespace quorvantis
