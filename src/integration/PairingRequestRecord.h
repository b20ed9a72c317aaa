#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>

#include "json/JSONRecord.h"

namespace quorvantis {

/// An agent's request to be registered: a JSON file in `HelperPaths::requests`, which waits for the user's
/// word in the desktop application and, once approved, hands over what the agent needs to connect.
struct PairingRequestRecord {
    /// A request goes from `pending` to `awaitingApproval`, then to `approved` or `denied`, and from
    /// `approved` to `consumed` once its registration has been taken up.
    enum class State { pending, awaitingApproval, approved, denied, consumed };

    std::string id;
    std::string agent;
    Date createdAt;
    Date expiresAt;
    State state = State::pending;
    std::optional<std::string> clientID;    // once issued
    std::optional<std::string> credential;  // once issued; secret

    static constexpr auto fields() {
        using M = PairingRequestRecord;
        return std::tuple(Field("id", &M::id), Field("agent", &M::agent), Field("createdAt", &M::createdAt),
                          Field("expiresAt", &M::expiresAt), Field("state", &M::state),
                          Field("clientID", &M::clientID), Field("credential", &M::credential));
    }
};

/// The states as JSON texts, in the order of the enumeration.
constexpr auto caseNames(PairingRequestRecord::State) {
    return std::to_array<std::string_view>({"pending", "awaitingApproval", "approved", "denied", "consumed"});
}

}  // namespace quorvantis
