#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <tuple>

#include "broker/BrokerIdentity.h"
#include "json/JSONRecord.h"

namespace quorvantis {

/// Which client an agent's server serves: the file "<agent>-mcp-session.json" in `HelperPaths::agents`, by
/// which the desktop application knows who is connected.
struct MCPClientSession {
    std::string clientID;
    std::int32_t processID = 0;  // of the server
    std::string executablePath;  // of the server: absolute, symbolic links resolved
    std::string clientName;      // as the client gave it
    Date initializedAt;

    static constexpr auto fields() {
        using M = MCPClientSession;
        return std::tuple(Field("clientID", &M::clientID), Field("processID", &M::processID),
                          Field("executablePath", &M::executablePath), Field("clientName", &M::clientName),
                          Field("initializedAt", &M::initializedAt));
    }

    /// Writes this process's record and posts the notification of it. Never fails. Does nothing when the
    /// environment has QUORVANTIS_DIAGNOSTIC=1.
    static void record(const BrokerIdentity& identity, std::string_view clientName);

    /// The path of an agent's record.
    static std::string url(std::string_view agent);

    /// Whether the process still lives and runs the same executable; the process's number alone may be
    /// another's by now.
    bool isRunning() const;
};

}  // namespace quorvantis
