#include "ClientWatch.h"

#include <exception>
#include <optional>
#include <string>
#include <vector>

#include "Terminal.h"
#include "json/JSONFiles.h"
#include "state/MCPClientSession.h"

namespace quorvantis::standin {

namespace {

std::optional<MCPClientSession> recordedSession(const std::string& agent) {
    try {
        return HelperIO::readJSON<MCPClientSession>(MCPClientSession::url(agent));
    } catch (const std::exception&) {
        return std::nullopt;  // no client of this agent has connected yet
    }
}

bool isSameSession(const MCPClientSession& one, const std::optional<MCPClientSession>& other) {
    return other && one.processID == other->processID && one.initializedAt == other->initializedAt;
}

std::string description(const std::string& agent, const MCPClientSession& session) {
    return agent + ": client \"" + session.clientName + "\" (process " + std::to_string(session.processID) +
           ")";
}

}  // namespace

ClientWatch::ClientWatch(const std::vector<std::string>& agents) {
    for (const std::string& agent : agents) {
        const auto session = recordedSession(agent);
        clients_.push_back({agent, session, session && session->isRunning()});
    }
}

void ClientWatch::update() {
    for (Client& client : clients_) update(client);
}

void ClientWatch::update(Client& client) {
    const auto session = recordedSession(client.agent);
    if (!session) return;
    const bool isRunning = session->isRunning();
    if (!isSameSession(*session, client.lastSession))
        log(description(client.agent, *session) + (isRunning ? " connected" : " came and went"));
    else if (client.wasRunning && !isRunning)
        log(description(client.agent, *session) + " left");
    client.lastSession = session;
    client.wasRunning = isRunning;
}

}  // namespace quorvantis::standin
