#include "integration/ProcessRunner.h"

#include <array>
#include <errno.h>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>

#include "platform/Descriptor.h"
#include "platform/HomeFolder.h"
#include "platform/Spawn.h"
#include "support/Environment.h"
#include "support/Files.h"
#include "support/Paths.h"
#include "support/UTF8.h"

extern "C" char** environ;

namespace quorvantis {

namespace {

using platform::Descriptor;

std::string searchPath() {
    return environmentVariable("PATH").value_or("/usr/bin:/bin") +
           ":/opt/homebrew/bin:/usr/local/bin:" + joinedPath(platform::homeFolder(), ".local/bin");
}

std::vector<std::string> childEnvironment() {
    std::vector<std::string> variables = {"PATH=" + searchPath()};
    for (char** variable = environ; *variable; ++variable)
        if (!std::string_view(*variable).starts_with("PATH=")) variables.emplace_back(*variable);
    return variables;
}

struct Pipe {
    Descriptor reading, writing;

    Pipe() {
        std::array<int, 2> ends;
        if (pipe(ends.data()) != 0) throw FileError::system(errno);
        for (const int end : ends) fcntl(end, F_SETFD, FD_CLOEXEC);
        reading = Descriptor(ends[0]);
        writing = Descriptor(ends[1]);
    }
};

pid_t started(const std::string& executable, const std::vector<std::string>& arguments,
              const Descriptor& output) {
    try {
        return platform::Spawn{.executable = executable,
                               .arguments = arguments,
                               .environment = childEnvironment(),
                               .descriptors = {platform::Spawn::nullDevice, output.get(), output.get()}}
            .start();
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
    Pipe pipe;
    const pid_t child = started(absolutePath(executable), arguments, pipe.writing);
    pipe.writing = Descriptor();  // the child's copies alone keep the pipe open
    // First the output: a child that prints a lot ends only when somebody reads it.
    std::string output = readToEnd(pipe.reading);
    const int status = platform::waitFor(child);
    return {.status = status, .output = isValidUTF8(output) ? std::move(output) : std::string()};
}

}  // namespace quorvantis
