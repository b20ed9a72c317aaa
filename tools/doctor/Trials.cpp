#include "Trials.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <poll.h>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

#include "imaging/AttachmentIdentity.h"
#include "json/JSON.h"
#include "json/JSONDocument.h"
#include "platform/Descriptors.h"
#include "platform/Spawn.h"
#include "support/Files.h"
#include "support/HelperIO.h"

extern "C" char** environ;

namespace quorvantis::doctor {

namespace {

using namespace std::string_view_literals;
using Clock = std::chrono::steady_clock;
using platform::Descriptor;

constexpr std::chrono::seconds serverTimeout(10);
constexpr std::chrono::seconds decoderTimeout(5);
constexpr std::size_t maximumOutput = 1 << 20;  // bytes

constexpr std::string_view requests =
    R"({"jsonrpc":"2.0","id":1,"method":"initialize","params":{"protocolVersion":"2025-06-18","capabilities":{},)"
    R"("clientInfo":{"name":"quorvantis-doctor","version":"1"}}})"
    "\n"
    R"({"jsonrpc":"2.0","id":2,"method":"tools/list"})"
    "\n"sv;

// A BMP of one red pixel, and its hash by definition.
constexpr auto picture =
    "BM\x3A\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0\1\0\0\0\1\0\0\0\1\0\x18\0\0\0\0\0\4\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0"
    "\0\0\xFF\0"sv;

std::string pictureHash() {
    return HelperIO::sha256("1x1:rgba8-srgb:\xFF\0\0\xFF"sv);
}

/// Reads to the end, to the deadline, or until there is too much.
std::string readOutput(const Descriptor& pipe, Clock::time_point deadline) {
    std::string output;
    std::array<char, 4096> buffer;
    while (output.size() < maximumOutput) {
        pollfd waiting = {.fd = pipe.get(), .events = POLLIN, .revents = 0};
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
        if (left <= 0 || poll(&waiting, 1, static_cast<int>(left)) < 1) break;
        const ssize_t count = read(pipe.get(), buffer.data(), buffer.size());
        if (count <= 0) break;
        output.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return output;
}

// ---- the server ------------------------------------------------------------------------------------------

std::vector<std::string> diagnosticEnvironment() {
    std::vector<std::string> variables = {"QUORVANTIS_DIAGNOSTIC=1"};  // the first of its name counts
    for (char** variable = environ; variable && *variable; ++variable) variables.emplace_back(*variable);
    return variables;
}

void take(std::string_view line, ServerTrial& trial) {
    const auto document = JSONDocument::parse(line);
    const JSON answer = document ? document->root() : JSON();
    const JSON result = answer["result"];
    if (answer["id"].integer() == 1)
        trial.version = result["serverInfo"]["version"].string().value_or("");
    else if (answer["id"].integer() == 2)
        trial.toolCount = result["tools"].elements().count();
    else if (trial.complaint.empty())
        trial.complaint = line;
}

// ---- the image decoder -----------------------------------------------------------------------------------

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

/// A file without a name.
File pictureFile() {
    File file(std::tmpfile(), &std::fclose);
    if (!file) throw std::system_error(errno, std::generic_category());
    std::fwrite(picture.data(), 1, picture.size(), file.get());
    std::fflush(file.get());
    return file;
}

/// Fills the pipe, and returns the number of bytes.
std::size_t fill(const Descriptor& pipe) {
    const std::array<char, 4096> block = {};
    std::size_t size = 0;
    fcntl(pipe.get(), F_SETFL, O_NONBLOCK);
    for (ssize_t written; (written = write(pipe.get(), block.data(), block.size())) > 0;)
        size += static_cast<std::size_t>(written);
    fcntl(pipe.get(), F_SETFL, 0);
    return size;
}

/// What the system says of a process (proc(5)); empty if there is none, or it is silent.
std::string statusOf(const std::string& process) try {
    return readFile("/proc/" + process + "/status");
} catch (const FileError&) {
    return "";
}

/// How many filters the process's system calls pass.
int filterCount(const std::string& status) {
    constexpr std::string_view key = "Seccomp_filters:";  // since Linux 5.9
    const auto place = status.find(key);
    return place == status.npos ? 0 : std::atoi(status.c_str() + place + key.size());
}

/// Watches a process until it has a filter that this one has not, has ended, or waits for something without
/// one.
bool getsFilter(const std::string& process, Clock::time_point deadline) {
    const int own = filterCount(statusOf("self"));
    for (; Clock::now() < deadline; std::this_thread::sleep_for(std::chrono::milliseconds(1))) {
        const std::string status = statusOf(process);
        if (filterCount(status) > own) return true;
        const bool isWorking =
            status.find("State:\tR") != status.npos || status.find("State:\tD") != status.npos;
        if (!isWorking) return false;
    }
    return false;
}

}  // namespace

ServerTrial tryServer(const std::string& executable, const std::vector<std::string>& arguments) {
    const auto start = Clock::now();
    platform::Pipe input, output;
    const platform::Spawn spawn = {
        .executable = executable,
        .arguments = arguments,
        .environment = diagnosticEnvironment(),
        .descriptors = {input.reading.get(), output.writing.get(), output.writing.get()}};
    const platform::Child server = spawn.start();
    output.writing = {};
    static_cast<void>(
        !write(input.writing.get(), requests.data(), requests.size()));  // a pipe has room for them
    input.writing = {};
    std::string text = readOutput(output.reading, start + serverTimeout);
    ServerTrial trial;
    trial.time = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start);
    server.kill();
    for (std::size_t feed; (feed = text.find('\n')) != text.npos; text.erase(0, feed + 1))
        take(std::string_view(text).substr(0, feed), trial);
    return trial;
}

DecoderTrial tryDecoder(const std::string& path) {
    constexpr int nullDevice = platform::Spawn::nullDevice;
    const auto deadline = Clock::now() + decoderTimeout;
    const File file = pictureFile();
    platform::Pipe output;
    // A decoder that cannot write its result yet holds still, and can be looked at.
    const std::size_t filled = fill(output.writing);
    const platform::Spawn spawn = {
        .executable = path,
        .arguments = {},
        .environment = {},
        .descriptors = {nullDevice, output.writing.get(), nullDevice, fileno(file.get())}};
    const platform::Child decoder = spawn.start();
    output.writing = {};
    const bool isSandboxed = getsFilter(std::to_string(decoder.id()), deadline);
    const std::string text = readOutput(output.reading, deadline + decoderTimeout);
    decoder.kill();
    return {text.size() > filled && text.substr(filled) == "1 1 " + pictureHash() + "\n", isSandboxed};
}

bool decodesPictures() {
    const File file = pictureFile();
    return HelperIO::attachmentIdentity("/dev/fd/" + std::to_string(fileno(file.get()))).pixelHash ==
           pictureHash();
}

}  // namespace quorvantis::doctor
