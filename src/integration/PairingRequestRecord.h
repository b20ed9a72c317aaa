#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>

#include "../json/Date.h"
#include "../json/JSONRecord.h"

namespace quorvantis {

/// An agent's request to be registered: a JSON file in `HelperPaths::requests`. The user approves or denies
/// it in the desktop application; an approved request contains the agent's credential.
struct PairingRequestRecord {
    /// A request changes from `pending` to `awaitingApproval`, then to `approved` or `denied`, and from
    /// `approved` to `consumed` once the agent has used its registration.
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

/// The JSON strings of the states, in the order of the enumeration.
constexpr auto caseNames(PairingRequestRecord::State) {
    return std::to_array<std::string_view>({"pending", "awaitingApproval", "approved", "denied", "consumed"});
}

}  // namespace quorvantis
