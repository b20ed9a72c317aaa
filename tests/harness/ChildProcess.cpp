#include "harness/ChildProcess.h"

#include <array>
#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace quorvantis::harness {

using platform::Descriptor;

static std::pair<Descriptor, Descriptor> newPipe() {
    std::array<int, 2> ends = {-1, -1};
    EXPECT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
    return {Descriptor(ends[0]), Descriptor(ends[1])};
}

/// What there is to read; empty at the end.
static std::string readSome(const Descriptor& descriptor) {
    pollfd waiting = {.fd = descriptor.get(), .events = POLLIN, .revents = 0};
    if (poll(&waiting, 1, 20'000) < 1) throw std::runtime_error("it says nothing");
    std::string bytes(65536, '\0');
    const ssize_t count = read(descriptor.get(), bytes.data(), bytes.size());
    return bytes.substr(0, static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
}

static std::vector<char*> pointers(const std::vector<std::string>& texts) {
    std::vector<char*> result;
    for (const auto& text : texts) result.push_back(const_cast<char*>(text.c_str()));
    result.push_back(nullptr);
    return result;
}

ChildProcess::ChildProcess(const Launch& launch) {
    auto [input, inputEnd] = newPipe();
    auto [outputEnd, output] = newPipe();
    auto [errorsEnd, errors] = newPipe();
    fcntl(output.get(), F_SETFL, O_NONBLOCK);
    const auto command = pointers(launch.command), environment = pointers(launch.environment);
    if ((id_ = fork()) == 0) {
        for (int stream = 0; const auto* end : {&input, &output, &errors}) dup2(end->get(), stream++);
        std::signal(SIGPIPE, SIG_DFL);
        execve(command[0], command.data(), environment.data());
        _exit(127);
    }
    input_ = std::move(inputEnd);
    output_ = std::move(outputEnd);
    errors_ = std::move(errorsEnd);
}

ChildProcess::~ChildProcess() {
    if (id_ <= 0) return;
    kill(id_, SIGKILL);
    waitpid(id_, nullptr, 0);
}

void ChildProcess::send(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = write(input_.get(), bytes.data(), bytes.size());
        ASSERT_GT(count, 0) << "it takes no more";
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
}

std::optional<std::string> ChildProcess::readLine() {
    std::size_t feed;
    while ((feed = received_.find('\n')) == received_.npos) {
        const std::string more = readSome(output_);
        EXPECT_TRUE(!more.empty() || received_.empty()) << "an unfinished line";
        if (more.empty()) return std::nullopt;
        received_ += more;
    }
    const std::string line = received_.substr(0, feed);
    received_.erase(0, feed + 1);
    return line;
}

void ChildProcess::expectEnd(int status, const std::string& errors) {
    closeInput();
    EXPECT_EQ(output_ ? readLine() : std::nullopt, std::nullopt);
    std::string said;
    for (std::string more; !(more = readSome(errors_)).empty();) said += more;
    EXPECT_EQ(said, errors);
    int state = 0;
    waitpid(std::exchange(id_, 0), &state, 0);
    EXPECT_EQ(WIFEXITED(state) ? WEXITSTATUS(state) : -WTERMSIG(state), status);
}

}  // namespace quorvantis::harness
