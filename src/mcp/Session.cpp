#include "mcp/Session.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <unistd.h>
#include <utility>

#include "broker/BrokerIdentity.h"
#include "json/JSON.h"
#include "json/JSONDocument.h"
#include "json/JSONWriter.h"
#include "mcp/Replies.h"
#include "mcp/Tools.h"
#include "mcp/Version.h"
#include "state/MCPClientSession.h"
#include "support/Streams.h"
#include "support/UTF8.h"

namespace quorvantis::QuorvantisMCP {

namespace {

constexpr int methodNotFound = -32601;  // JSON-RPC 2.0, section 5.1

constexpr std::array<std::string_view, 4> protocolVersions = {"2024-11-05", "2025-03-26", "2025-06-18",
                                                              "2025-11-25"};
constexpr std::string_view defaultVersion = "2025-03-26";  // if the client requests none

std::string_view negotiatedVersion(std::string_view requested) {
    const auto found = std::find(protocolVersions.begin(), protocolVersions.end(), requested);
    return found == protocolVersions.end() ? protocolVersions.back() : *found;
}

void initialize(JSON id, JSON params, const BrokerIdentity& identity) {
    const auto requested = params["protocolVersion"].string().value_or(defaultVersion);
    const auto clientName = params["clientInfo"]["name"].string().value_or("MCP client");
    MCPClientSession::record(identity, clientName);
    reply(id, jsonObject("protocolVersion", negotiatedVersion(requested),                       //
                         "capabilities", jsonObject("tools", jsonObject("listChanged", true)),  //
                         "serverInfo", jsonObject("name", "Quorvantis", "version", version)));
}

// The parser rejects ill-formed UTF-8, so only a rejected line can need repair.
std::optional<JSONDocument> parsedLine(std::string_view line) {
    auto request = JSONDocument::parse(line);
    return request || isValidUTF8(line) ? std::move(request) : JSONDocument::parseOwned(repairedUTF8(line));
}

class Session {
  public:
    explicit Session(const BrokerIdentity& identity) : identity_(identity) {}

    void handle(JSON request) {
        const auto method = request["method"].string();
        if (!method) return;
        if (*method == "notifications/initialized") return notifyToolsListChanged();
        if (const auto id = request.find("id")) respond(*id, *method, request["params"]);
    }

  private:
    void respond(JSON id, std::string_view method, JSON params) {
        if (method == "initialize") return initialize(id, params, identity_);
        if (method == "ping") return reply(id, jsonObject());
        if (method == "tools/list") return reply(id, toolList());
        if (method == "tools/call")
            return callTool(id, params["name"].string().value_or(""), params["arguments"], identity_);
        failure(id, methodNotFound, "Method not found");
    }

    /// Serialized once, because a client may list the tools at every turn.
    const JSONText& toolList() {
        if (toolList_.text.empty()) toolList_ = jsonText(jsonObject("tools", toolDefinitions(identity_)));
        return toolList_;
    }

    const BrokerIdentity& identity_;
    JSONText toolList_;
};

}  // namespace

void serve(const BrokerIdentity& identity) {
    Session session(identity);
    LineReader lines(STDIN_FILENO);
    while (const auto line = lines.next())
        if (const auto request = parsedLine(*line)) session.handle(request->root());
}

}  // namespace quorvantis::QuorvantisMCP
