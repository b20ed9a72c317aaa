#include "Sessions.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sys/socket.h>
#include <unistd.h>

#include "broker/BrokerTransport.h"
#include "integration/AgentManifest.h"
#include "support/HelperIO.h"

namespace quorvantis::bench {

namespace {

constexpr const char* token = "token";

void expect(bool holds, const char* what) {
    if (holds) return;
    std::perror(what);
    std::exit(1);
}

/// The value of a member that is a string without escapes.
std::string member(const std::string& object, const std::string& key) {
    const auto start = object.find("\"" + key + "\":\"") + key.size() + 4;
    return object.substr(start, object.find('"', start) - start);
}

std::string entry() {
    std::string text;
    while (text.size() < 300)
        text +=
            R"(words of a text that was copied, caf\u00e9, \"quoted\", \/usr\/bin, naïve, 漢字, and then a line\n)";
    return R"({"entryID":"4C5CE566-117B-46E5-8EEA-E38CEFCA5047","createdAt":780111542.25,"kind":"text",)"
           R"("preview":"copied \"quoted\"","detail":"text","sourceApplication":"org.example.editor","text":")" +
           text + "\"}";
}

/// A reply of at most so many bytes, but one entry.
std::string reply(const std::string& requestID, std::size_t size) {
    static const std::string one = entry();
    std::string reply =
        R"({"version":1,"requestID":")" + requestID + R"(","ok":true,"matched":true,"entries":[)" + one;
    while (reply.size() + one.size() + 10 < size) reply.append(",").append(one);
    return reply + "]}\n";
}

/// Returns a string that the next call in this thread writes over: to make one takes time that others would
/// be blamed for.
const std::string& readLine(int descriptor) {
    thread_local std::vector<char> bytes(1 << 20);
    thread_local std::string line;
    line.clear();
    while (!line.ends_with('\n')) {
        const ssize_t count = read(descriptor, bytes.data(), bytes.size());
        expect(count > 0, "the end of a line is missing");
        line.append(bytes.data(), static_cast<std::size_t>(count));
    }
    return line;
}

void send(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = write(descriptor, bytes.data(), bytes.size());
        expect(count > 0, "write");
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
}

}  // namespace

double since(Clock::time_point start) {
    return std::chrono::duration<double, std::micro>(Clock::now() - start).count();
}

double median(std::vector<double> values) {
    std::ranges::sort(values);
    return values[values.size() / 2];
}

Place::Place() : listener_(platform::openLocalSocket()) {
    const std::string agents = folder / "Integrations/Agents";
    harness::writeText(folder / "credential", token);
    harness::writeText(agents + "/codex.json",
                       encodedRecord(AgentManifest{.agent = "codex",
                                                   .clientID = "bench",
                                                   .credentialHash = HelperIO::sha256(token),
                                                   .credentialPath = folder / "credential"}));
    harness::writeText(folder / "Runtime/.keep", "");
    const auto address = BrokerTransport::address(folder / "Runtime/quorvantis.sock");
    expect(bind(listener_.get(), address->get(), address->length) == 0, "bind");
    expect(listen(listener_.get(), 128) == 0, "listen");
    broker_ = std::thread([this] { serve(); });
}

Place::~Place() {
    shutdown(listener_.get(), SHUT_RDWR);
    broker_.join();
}

void Place::serve() const {
    std::string last, lastSize;  // making a reply takes longer than sending it
    for (;;) {
        const platform::Descriptor connection(accept(listener_.get(), nullptr, nullptr));
        if (!connection) return;
        const std::string& request = readLine(connection.get());
        const std::string id = member(request, "requestID"), size = member(request, "query");
        if (size != lastSize) last = reply(id, std::stoul(lastSize = size));
        const auto place = last.find("requestID\":\"") + 12;
        last.replace(place, last.find('"', place) - place, id);
        send(connection.get(), last);
    }
}

Session::Session(const std::string& program, const Place& place) {
    platform::Pipe input, output;
    child_ = platform::Spawn{.executable = program,
                             .arguments = {"serve", "--agent", "codex", "--client-id", "bench",
                                           "--credential-file", place.folder / "credential"},
                             .environment = {"QUORVANTIS_TESTING=1",
                                             "QUORVANTIS_APP_SUPPORT=" + place.folder.path()},
                             .descriptors = {input.reading.get(), output.writing.get(), STDERR_FILENO}}
                 .start();
    input_ = std::move(input.writing), output_ = std::move(output.reading);
    request(R"("method":"initialize")");
}

void Session::search(std::size_t size) {
    request(R"("method":"tools/call","params":{"name":"search_clipboard_history","arguments":{"query":")" +
            std::to_string(size) + "\"}}");
}

void Session::request(const std::string& members) {
    send(input_.get(), R"({"jsonrpc":"2.0","id":1,)" + members + "}\n");
    const std::string& answer = readLine(output_.get());
    const std::string_view end =
        std::string_view(answer).substr(answer.size() - std::min(answer.size(), std::size_t{40}));
    expect(end.find("\"isError\":true") == end.npos, "a call failed");
}

void Session::end() {
    input_ = {};
    expect(child_.wait() == 0, "the program failed");
}

double Session::memory(const std::string& file, const std::string& name) const {
    std::ifstream lines("/proc/" + std::to_string(child_.id()) + "/" + file);
    for (std::string word; lines >> word;)
        if (word == name + ":") {
            lines >> word;
            return std::stod(word);
        }
    expect(false, name.c_str());
    return 0;
}

}  // namespace quorvantis::bench
