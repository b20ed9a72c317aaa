#include <algorithm>
#include <csignal>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <pwd.h>
#include <set>
#include <sstream>
#include <sys/socket.h>
#include <sys/stat.h>
#include <thread>

#include "harness/FakeBroker.h"
#include "harness/Installation.h"
#include "support/Files.h"

namespace quorvantis {

using harness::BrokerConnection;
using harness::FakeBroker;
using Owner = std::shared_ptr<void>;

static const std::string answered = R"("isError":false})", notSent = "Ombrel Link request failed.",
                         noReply = "Ombrel Link did not respond.",
                         notRunning = "Quorvantis is not running or Ombrel Link is unavailable.",
                         invalid = "Quorvantis returned an invalid broker response.",
                         noJSON = "The data couldn’t be read because it isn’t in the correct format.";

static std::string right(const std::string& request, std::size_t size = 0) {
    const std::string reply = harness::replyTo(request, R"({"entries":[{}],"images":[{}]})");
    return std::string(size - std::min(size, reply.size()), ' ') + reply;
}

static FakeBroker::Play replies(std::function<std::string(const std::string& request)> reply) {
    return [=](auto& connection) { connection.send(reply(connection.receive())); };
}

static void awaitState(pid_t process, char state) {
    const auto current = [&] {
        const std::string status = readFile("/proc/" + std::to_string(process) + "/stat");
        return status[status.rfind(')') + 2];
    };
    for (int looks = 0; current() != state; usleep(10'000)) ASSERT_LT(++looks, 1000) << state;
}

static FakeBroker::Play signals(const std::vector<int>& all) {
    return [=](auto& connection) {
        ucred server = {};
        socklen_t size = sizeof server;
        getsockopt(connection.socket.get(), SOL_SOCKET, SO_PEERCRED, &server, &size);
        const std::string request = connection.receive();
        awaitState(server.pid, 'S');
        for (const int signal : all) {
            kill(server.pid, signal);
            if (signal == SIGSTOP) awaitState(server.pid, 'T');
        }
        connection.send(right(request));
    };
}

static void replyLate(BrokerConnection& connection) {
    const std::string request = connection.receive();
    connection.awaitHangUp();
    connection.send(right(request));
}

static void replySlowly(BrokerConnection& connection) {
    for (const char byte : right(connection.receive())) connection.send({&byte, 1}), usleep(500);
}

/// What goes wrong at the broker's end of one call, and what the agent may then hear.
static const struct Fault {
    std::string name;
    std::vector<std::string> outcomes;
    FakeBroker::Play play;
    bool isSlow = false;
} faults[] = {
    {"absent", {notRunning}, {}},
    {"refusing", {notRunning}, {}},
    {"foreign", {notRunning}, replies([](auto& request) { return right(request); })},
    {"full queue", {notRunning}, {}, true},
    {"late", {noReply}, replyLate, true},
    {"slow", {answered}, replySlowly},
    {"gone at once", {notSent, noReply}, [](auto&) {}},
    {"gone before the reply", {noReply}, replies([](auto&) { return ""; })},
    {"gone within the reply", {noJSON}, replies([](auto& request) { return right(request).substr(0, 9); })},
    {"a mebibyte", {answered}, replies([](auto& request) { return right(request, 1'048'576); })},
    {"one byte more", {noReply}, replies([](auto& request) { return right(request, 1'048'577); })},
    {"garbage", {noJSON}, replies([](auto&) { return std::string(1'000'000, '\xff') + "\n"; })},
    {"of another request", {invalid}, replies([](auto&) { return right(R"({"requestID":"x"})"); })},
    {"signals that mean nothing", {answered}, signals({SIGPIPE, SIGCHLD, SIGURG, SIGWINCH})},
    {"stopped for a while", {noReply}, signals({SIGSTOP, SIGCONT})}};

static Owner brokerWith(const Fault& fault, const std::string& socket) {
    if (fault.name == "refusing") harness::boundTo(socket);
    if (fault.name == "full queue")
        return std::make_shared<std::vector<platform::Descriptor>>(harness::fullQueue(socket));
    if (!fault.play) return {};
    auto broker = std::make_shared<FakeBroker>(socket, fault.play);
    if (fault.name == "foreign" && chown(socket.c_str(), getpwnam("daemon")->pw_uid, getegid()) != 0)
        chmod(socket.c_str(), 0);  // only root can give it away
    return broker;
}

static const std::string calls[] = {
    R"({"name":"search_clipboard_history","arguments":{"query":"x"}})",
    R"({"name":"get_clipboard_item","arguments":{"entry_id":"x"}})", R"({"name":"get_integration_status"})",
    R"({"name":"resolve_current_prompt_images","arguments":{"workspace_root":"/w","attachments":[)"
    R"({"file_path":")" QUORVANTIS_PICTURES R"(/grays/8.png"}]}})"};

/// The process's children and open descriptors.
static std::set<std::string> holdings(pid_t process) {
    const std::string folder = "/proc/" + std::to_string(process);
    std::set<std::string> all = {readFile(folder + "/task/" + std::to_string(process) + "/children")};
    for (const std::filesystem::path& file : std::filesystem::directory_iterator(folder + "/fd"))
        all.insert(file.filename().string() + " " + read_symlink(file).string());
    return all;
}

static long residentPages(pid_t process) {
    std::istringstream sizes(readFile("/proc/" + std::to_string(process) + "/statm"));
    long all = 0, resident = 0;
    sizes >> all >> resident;
    return resident;
}

/// One server meets all faults in this call, and serves the same call after each; then most of them again.
static void meetAll(const std::string& call) {
    harness::Installation installation;
    installation.environment.push_back(
        "ASAN_OPTIONS=quarantine_size_mb=0:thread_local_quarantine_size_kb=0:"  // freed memory would pile up
        "detect_stack_use_after_return=0");                                     // and frames
    auto launch = installation.launch();
    if (geteuid() == 0)  // who may open any socket otherwise
        launch.command.insert(launch.command.begin(),
                              {"/usr/bin/setpriv", "--bounding-set", "-dac_override"});
    harness::ChildProcess server(launch);
    const auto expectOutcome = [&](const Fault& fault) {
        const Owner broker = brokerWith(fault, installation.socket());
        server.send(R"({"id":1,"method":"tools/call","params":)" + call + "}\n");
        const std::string answer = server.readLine().value_or("none");
        EXPECT_TRUE(std::any_of(fault.outcomes.begin(), fault.outcomes.end(),
                                [&](auto& outcome) { return answer.find(outcome) != answer.npos; }))
            << fault.name << ", " << call << ": " << answer;
        unlink(installation.socket().c_str());
    };
    const Fault none = {"none", {answered}, replies([](auto& request) { return right(request); })};
    expectOutcome(none);
    const auto before = holdings(server.id());
    long resident = 0;
    for (const bool again : {false, true, true}) {
        for (const Fault& fault : faults) {
            if (fault.isSlow && again) continue;
            expectOutcome(fault);
            EXPECT_EQ(holdings(server.id()), before) << fault.name << ", " << call;
            if (!again) expectOutcome(none);
        }
        if (!again) resident = residentPages(server.id());
    }
    EXPECT_LT(residentPages(server.id()), resident + 250) << call;
    server.expectEnd();
}

TEST(BrokerFaultsTest, CostTheCallAlone) {
    std::vector<std::thread> sessions;
    for (const auto& call : calls) sessions.emplace_back(meetAll, call);
    for (auto& session : sessions) session.join();
}

}  // namespace quorvantis
