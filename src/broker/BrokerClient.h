#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "broker/BrokerIdentity.h"
#include "integration/HelperPaths.h"
#include "json/JSONDocument.h"
#include "json/JSONWriter.h"

namespace quorvantis {

/// One argument of a broker operation.
struct BrokerField {
    std::string_view key;
    JSONText value;
};

/// A client of the desktop application's broker. One value serves one tool call; it holds nothing open.
struct BrokerClient {
    BrokerIdentity identity;
    std::string socketURL = HelperPaths().socket;

    /// Asks the broker for one operation and answers its whole reply, an object. The fields stand beside the
    /// envelope's own keys, and in the place of one that they repeat. Throws HelperFailure `unavailable`,
    /// with the broker's own words when it refuses; DecodingError for a reply that is no JSON.
    JSONDocument call(std::string_view operation, const std::vector<BrokerField>& fields = {}) const;

    /// Whether somebody listens at this socket, and the socket is this user's alone. Sends nothing.
    static bool isLocalReachable(const std::string& socketURL);
};

}  // namespace quorvantis
