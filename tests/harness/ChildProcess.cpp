#include "harness/ChildProcess.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <stdexcept>
#include <unistd.h>

#include "platform/Descriptors.h"

namespace quorvantis::harness {

using platform::Descriptor;

/// What there is to read; empty at the end.
static std::string readSome(const Descriptor& descriptor) {
    pollfd waiting = {.fd = descriptor.get(), .events = POLLIN, .revents = 0};
    if (poll(&waiting, 1, 20'000) < 1) throw std::runtime_error("it says nothing");
    std::string bytes(65536, '\0');
    const ssize_t count = read(descriptor.get(), bytes.data(), bytes.size());
    return bytes.substr(0, static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
}

ChildProcess::ChildProcess(const Launch& launch) {
    platform::Pipe input, output, errors;
    fcntl(output.writing.get(), F_SETFL, O_NONBLOCK);
    platform::Spawn child = {
        .executable = launch.command.at(0),
        .arguments = {launch.command.begin() + 1, launch.command.end()},
        .environment = launch.environment,
        .descriptors = {input.reading.get(), output.writing.get(), errors.writing.get()}};
    // On macOS a program with the address sanitizer says at its start that it cannot use that zone.
    child.environment.push_back("MallocNanoZone=0");
    child_ = child.start();
    input_ = std::move(input.writing);
    output_ = std::move(output.reading);
    errors_ = std::move(errors.reading);
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
    EXPECT_EQ(child_.wait(), status);
}

}  // namespace quorvantis::harness
