#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Descriptors.h"
#include "platform/Spawn.h"

namespace quorvantis::harness {

/// A program under test, at work between pipes; the one that it writes to does not block. To wait for it
/// longer than 20 seconds is a failure of the test.
class ChildProcess {
  public:
    struct Launch {
        std::vector<std::string> command;           // the program's absolute path first
        std::vector<std::string> environment = {};  // NAME=value; only MallocNanoZone is added
    };

    explicit ChildProcess(const Launch& launch);
    ChildProcess(const ChildProcess&) = delete;
    ~ChildProcess() { child_.kill(); }

    pid_t id() const { return child_.id(); }
    int output() const { return output_.get(); }
    void send(std::string_view bytes);
    void closeInput() { input_ = {}; }
    void closeOutput() { output_ = {}; }
    /// The next line of its output without the line feed; nothing at the end.
    std::optional<std::string> readLine();
    /// Closes its input, and expects that it writes nothing more and exits: with this status (or by the
    /// signal of this number) and standard error.
    void expectEnd(int status = 0, const std::string& errors = "");

  private:
    platform::Child child_;
    platform::Descriptor input_, output_, errors_;
    std::string received_;
};

}  // namespace quorvantis::harness
