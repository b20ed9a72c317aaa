#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <tuple>

#include "../broker/BrokerIdentity.h"
#include "../json/Date.h"
#include "../json/JSONRecord.h"

namespace quorvantis {

/// Tells the desktop application which client an agent's server is serving: the file
/// "<agent>-mcp-session.json" in `HelperPaths::agents`.
struct MCPClientSession {
    std::string clientID;
    std::int32_t processID = 0;  // of the server
    std::string executablePath;  // of the server; absolute, with symbolic links resolved
    std::string clientName;      // as the client gave it
    Date initializedAt;

    static constexpr auto fields() {
        using M = MCPClientSession;
        return std::tuple(Field("clientID", &M::clientID), Field("processID", &M::processID),
                          Field("executablePath", &M::executablePath), Field("clientName", &M::clientName),
                          Field("initializedAt", &M::initializedAt));
    }

    /// Writes this process's record and posts the notification of the change. Errors are ignored. Does
    /// nothing if the environment has QUORVANTIS_DIAGNOSTIC=1.
    static void record(const BrokerIdentity& identity, std::string_view clientName);

    /// The path of an agent's record.
    static std::string url(std::string_view agent);

    /// Whether the process still runs the same executable. Comparing the executable rules out another process
    /// that has reused the number.
    bool isRunning() const;
};

}  // namespace quorvantis
