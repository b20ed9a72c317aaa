#include "harness/Transcript.h"

#include <gtest/gtest.h>
#include <map>
#include <sstream>

#include "harness/FakeBroker.h"
#include "harness/Installation.h"
#include "json/UUID.h"

namespace quorvantis::harness {

using Lines = std::vector<std::pair<std::string, std::string>>;  // mark and content

static Lines linesOf(const std::string& text, bool ofBroker) {
    Lines lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        if (line.empty() || line.starts_with('#') || line.starts_with("broker ") != ofBroker) continue;
        for (std::size_t at; (at = line.find("\\x")) != line.npos;)
            line.replace(at, 4, 1, static_cast<char>(std::stoi(line.substr(at + 2, 2), nullptr, 16)));
        if (ofBroker) line.erase(0, line.find(' ') + 1);
        lines.push_back({line.substr(0, 2), line.size() > 3 ? line.substr(3) : ""});
    }
    return lines;
}

static std::map<std::string, std::string> membersOf(const std::string& object) {
    const auto document = JSONDocument::parse(object);
    std::map<std::string, std::string> members;
    for (const auto [key, value] : document.value().root().members())
        members[std::string(key)] = jsonText(value).text;
    return members;
}

static void expectRequest(const std::string& request, const std::string& expected) {
    auto members = membersOf(expected);
    const std::string id = requestIDOf(request);
    const UUID uuid = UUID::parse(id).value();
    EXPECT_EQ(uuid.lowerCaseText(), id);
    EXPECT_TRUE(uuid.bytes[6] >> 4 == 4 && uuid.bytes[8] >> 6 == 2) << "random, by RFC 4122: " << id;
    members.insert({{"version", "1"}, {"requestID", "\"" + id + "\""}, {"agent", "\"codex\""}});
    members.insert({{"clientID", "\"client-1\""}, {"credential", "\"secret/token\""}});
    EXPECT_EQ(membersOf(request), members);
}

static void playClient(ChildProcess& server, const Lines& lines) {
    for (const auto& [mark, content] : lines) {
        if (mark == "<-") {
            ASSERT_EQ(server.readLine(), content);
        } else {
            server.send(content + (mark == "->" ? "\n" : ""));
        }
        if (mark == "-|") server.closeInput();
    }
    server.expectEnd();
}

void playTranscript(const std::string& text) {
    const Installation installation;
    const Lines exchanges = linesOf(text, true);
    std::optional<FakeBroker> broker;
    if (!exchanges.empty())
        broker.emplace(installation.socket(), [&, next = exchanges.begin()](auto& connection) mutable {
            const std::string request = connection.receive();
            if (next == exchanges.end()) return;
            expectRequest(request, next++->second);
            connection.send(replyTo(request, next++->second));
        });
    ChildProcess server(installation.launch());
    playClient(server, linesOf(text, false));
    EXPECT_EQ(broker ? broker->requests().size() * 2 : 0, exchanges.size());
}

}  // namespace quorvantis::harness
