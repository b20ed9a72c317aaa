#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace quorvantis {

/// The exit status and the output of an external tool.
struct ProcessResult {
    std::int32_t status = 0;  // its exit status, or the number of the signal that killed it
    std::string output;       // standard output and standard error, interleaved; empty unless valid UTF-8
};

/// Runs the executable at a path and waits for it without a timeout. No shell is involved. The tool's
/// standard input is the null device. It inherits this process's environment; the folders of common package
/// managers are appended to its PATH. Throws FileError if it cannot be started, and before it is started if
/// this process ignores SIGCHLD, because then there is no exit status.
ProcessResult runProcess(const std::string& executable, const std::vector<std::string>& arguments);

}  // namespace quorvantis
