#include "integration/ToolRoles.h"

#include <csignal>
#include <unistd.h>

#include "harness/Descriptors.h"
#include "platform/Process.h"
#include "support/Streams.h"

namespace quorvantis {

static void print(const std::string& text) {
    writeStream(STDOUT_FILENO, text);
}

static void writeToBoth() {
    print("out\n");
    writeStream(STDERR_FILENO, "err\n");
    print("out again");
}

static void dieOf(int signal) {
    print("last words");
    raise(signal);
}

int playTool(const std::vector<std::string>& words) {
    const std::string& role = words.front();
    if (role == "arguments") print(words.at(1) + "|" + words.at(2));
    if (role == "both") writeToBoth();
    if (role == "bytes") print("x\xff");
    if (role == "flood") print(std::string(10'485'760, 'x'));
    if (role == "signal") dieOf(std::stoi(words.at(1)));
    if (role == "path") print(platform::environmentVariable("PATH").value_or("none"));
    if (char byte; role == "read") print(std::to_string(read(STDIN_FILENO, &byte, 1)));
    if (role == "descriptors") print(std::to_string(harness::openDescriptors()));
    return role == "both" ? 3 : 0;
}

}  // namespace quorvantis
