#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "../integration/HelperPaths.h"
#include "../json/JSONDocument.h"
#include "../json/JSONWriter.h"
#include "BrokerIdentity.h"

namespace quorvantis {

/// One argument of a broker operation: a member of the request object.
struct BrokerField {
    std::string_view key;
    JSONText value;
};

/// The longest path of the broker's socket in bytes: the limit of macOS (unix(4)), on every system.
inline constexpr std::size_t maximumSocketPathSize = 103;

/// A client of the desktop application's broker. It keeps no connection open between calls.
struct BrokerClient {
    BrokerIdentity identity;
    std::string socketURL = HelperPaths().socket;

    /// Sends one request and returns the whole reply, an object. The fields are added to the envelope, and
    /// replace a member of it that has the same key. Throws HelperFailure `unavailable`, with the broker's
    /// own message if it refuses, and DecodingError if the reply is not a JSON object or array.
    JSONDocument call(std::string_view operation, const std::vector<BrokerField>& fields = {}) const;

    /// Whether the path is a socket of this user, of mode 0600, that accepts connections. Sends nothing.
    static bool isLocalReachable(const std::string& socketURL);
};

}  // namespace quorvantis
