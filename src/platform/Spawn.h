#pragma once

#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace quorvantis::platform {

/// A child process to be: what it runs, and all that it inherits.
struct Spawn {
    static constexpr int nullDevice = -1;

    std::string executable;                // its path; it is not searched for
    std::vector<std::string> arguments;    // without the program's own name
    std::vector<std::string> environment;  // NAME=value
    /// The descriptors that become 0, 1, 2 and so on in the child, or `nullDevice`. It gets no others. One at
    /// the most may stand behind the standard streams.
    std::vector<int> descriptors;

    /// Starts it, with no signal ignored or blocked, and answers its number. Throws std::system_error.
    pid_t start() const;
};

/// Waits for a child to end; SIGCHLD must not be ignored. Answers its exit status, or the number of the
/// signal that killed it.
int waitFor(pid_t child);

}  // namespace quorvantis::platform
