#include <algorithm>
#include <csignal>
#include <gtest/gtest.h>
#include <map>
#include <sstream>
#include <unistd.h>

#include "harness/FakeBroker.h"
#include "harness/Installation.h"
#include "harness/Words.h"
#include "json/JSONFiles.h"
#include "state/MCPClientSession.h"

namespace quorvantis {

static const std::string requests =
    "{\"id\":1,\"method\":\"initialize\"}\n"
    R"({"id":2,"method":"tools/call","params":{"name":"resolve_current_prompt_images","arguments":)"
    R"({"workspace_root":"/w","attachments":[{"file_path":")" QUORVANTIS_PICTURES R"(/grays/8.png"}]}}})"
    "\n{\"id\":3,\"method\":\"ping\"}\n";

/// Plays a session with the server under strace and returns what strace wrote down. With a fault, every
/// request is answered nevertheless, and the record of the session is the old one or the new one.
static std::string played(const std::string& fault) {
    SCOPED_TRACE(fault);
    const bool isDeadly = fault.find("=KILL") != fault.npos;
    harness::Installation installation;
    installation.environment.push_back("ASAN_OPTIONS=detect_leaks=0");  // which cannot be while strace looks
    const std::string record = installation.agentFile("codex-mcp-session.json"), old = "old",
                      log = installation.folder / "log";
    harness::writeText(record, old);
    const harness::FakeBroker broker(installation.socket(), [](auto& connection) {
        connection.send(harness::replyTo(connection.receive(), "{}"));
    });
    auto launch = installation.launch();
    launch.command.insert(launch.command.begin(), {"/usr/bin/strace", "-o", log, "-e", "inject=" + fault});
    harness::ChildProcess server(launch);
    server.send(requests);
    for (const std::string id : {"1", "2", "3"}) {
        const std::string answer = server.readLine().value_or("");
        EXPECT_TRUE(isDeadly || answer.starts_with(R"({"jsonrpc":"2.0","id":)" + id)) << answer;
    }
    server.expectEnd(isDeadly ? SIGKILL : 0);
    if (readFile(record) != old) HelperIO::readJSON<MCPClientSession>(record);
    EXPECT_LE(harness::itemsIn(installation.agentFile("")), isDeadly ? 3 : 2) << "a temporary file is left";
    const std::string calls = readFile(log);
    EXPECT_EQ(calls.find("(INJECTED)\nrename("), calls.npos) << "it may not be stored";
    return calls;
}

/// The faults to play: one at a time, each call that strace saw fails.
static std::vector<std::string> faults(const std::string& log) {
    // Of memory and of the process itself.
    const std::string spared =
        " mmap munmap brk futex sigaltstack rt_sigprocmask prlimit64 getpid getcwd --- ";
    const auto errors = harness::words("ENOSPC EIO EMFILE EDQUOT EROFS");
    std::map<std::string, int> counts;
    std::vector<std::string> faults;
    std::istringstream lines(log);
    int answers = -1;
    for (std::string line; std::getline(lines, line);) {
        const std::string name = line.substr(0, line.find_first_of("( "));
        const std::string when = ":when=" + std::to_string(++counts[name]);
        if (line.starts_with("write(1,")) ++answers;
        if (line.starts_with("read(0,")) answers = std::max(answers, 0);
        if (answers < 0 || answers > 1 || line.find("(0,") == 4 || line.find("(1,") == 5) continue;
        const bool opens = name == "openat" || name == "socket" || name == "pipe2";
        EXPECT_TRUE(!opens || line.find("CLOEXEC") != line.npos) << line;
        if (spared.find(" " + name + " ") != spared.npos || name == (answers == 0 ? "readlink" : "close"))
            continue;  // links to the server; and a close that fails has closed, which strace cannot do
        for (int i = answers == 0 ? 2 : 1; i > 0; --i)
            faults.push_back(name + ":error=" + errors[faults.size() % errors.size()] + when);
        if (answers == 0) faults.push_back(name + ":signal=KILL" + when);
    }
    return faults;
}

TEST(SystemCallsTest, MayFailOneByOne) {
    if (access("/usr/bin/strace", X_OK) != 0) GTEST_SKIP() << "strace is not installed";
    const auto all = faults(played("?none:error=EIO"));
    std::size_t reached = 0;  // not quite all: mkostemp() asks for random numbers again at times
    for (const auto& fault : all) {
        const std::string log = played(fault);
        if (log.find("(INJECTED)") != log.npos || log.find("+++ killed") != log.npos) ++reached;
    }
    EXPECT_GT(reached, std::max<std::size_t>(40, all.size() * 9 / 10)) << "of " << all.size();
}

}  // namespace quorvantis
