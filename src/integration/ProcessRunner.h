#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace quorvantis {

/// How an external tool ended, and what it printed.
struct ProcessResult {
    std::int32_t status = 0;  // the exit status, or the number of the signal that killed it
    std::string output;       // standard output and standard error as they came; empty unless it is all UTF-8
};

/// Runs an executable, named by its path, and waits for it, however long it takes. No shell is involved. The
/// tool reads the null device and has this process's environment, with a PATH that ends in the folders of the
/// usual package managers. Throws FileError when it cannot be started.
ProcessResult runProcess(const std::string& executable, const std::vector<std::string>& arguments);

}  // namespace quorvantis
