#include "integration/ProcessRunner.h"

#include <array>
#include <csignal>
#include <cstddef>
#include <errno.h>
#include <string>
#include <system_error>
#include <unistd.h>
#include <utility>
#include <vector>

#include "platform/Descriptors.h"
#include "platform/Process.h"
#include "platform/Spawn.h"
#include "support/Files.h"
#include "support/Paths.h"
#include "support/UTF8.h"

extern "C" char** environ;

namespace quorvantis {

namespace {

using platform::Descriptor;

std::string searchPath() {
    return platform::environmentVariable("PATH").value_or("/usr/bin:/bin") +
           ":/opt/homebrew/bin:/usr/local/bin:" +
           joinedPath(absolutePath(platform::homeFolder()), ".local/bin");
}

std::vector<std::string> childEnvironment() {
    std::vector<std::string> variables = {"PATH=" + searchPath()};
    for (char** variable = environ; variable && *variable; ++variable)  // null after clearenv
        if (!std::string_view(*variable).starts_with("PATH=")) variables.emplace_back(*variable);
    return variables;
}

struct RunningTool {
    platform::Child tool;
    Descriptor output;  // destroyed before `tool`, whose destructor would wait forever for a blocked writer
};

RunningTool start(const std::string& executable, const std::vector<std::string>& arguments) {
    platform::Pipe pipe;
    const int output = pipe.writing.get();
    auto tool = platform::Spawn{.executable = executable,
                                .arguments = arguments,
                                .environment = childEnvironment(),
                                .descriptors = {platform::Spawn::nullDevice, output, output}}
                    .start();
    return {std::move(tool), std::move(pipe.reading)};
}

/// A process that ignores SIGCHLD gets no exit status of a child (sigaction(2)).
bool getsExitStatuses() {
    struct sigaction action;
    return sigaction(SIGCHLD, nullptr, &action) == 0 && action.sa_handler != SIG_IGN &&
           (action.sa_flags & SA_NOCLDWAIT) == 0;
}

RunningTool startOrThrow(const std::string& executable, const std::vector<std::string>& arguments) {
    if (!getsExitStatuses()) throw FileError::system(ECHILD);
    try {
        return start(executable, arguments);
    } catch (const std::system_error& error) {
        throw FileError::starting(executable, error.code().value());
    }
}

std::string readToEnd(const Descriptor& pipe) {
    std::string text;
    std::array<char, 65536> buffer;
    for (;;) {
        const ssize_t count = read(pipe.get(), buffer.data(), buffer.size());
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return text;
        text.append(buffer.data(), static_cast<std::size_t>(count));
    }
}

}  // namespace

ProcessResult runProcess(const std::string& executable, const std::vector<std::string>& arguments) {
    RunningTool process = startOrThrow(absolutePath(executable), arguments);
    // Read before waiting: a child blocks once the pipe is full.
    std::string output = readToEnd(process.output);
    const int status = process.tool.wait();
    return {.status = status, .output = isValidUTF8(output) ? std::move(output) : std::string()};
}

}  // namespace quorvantis
