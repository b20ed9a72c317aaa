#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quorvantis::standin {

/// A wrong answer, to test an agent with.
enum class Fault {
    slow,       // the reply comes after 1.5 s, within the 2 s that a server waits
    silent,     // no reply, but the connection stays open
    hangUp,     // no reply, and the connection is closed
    oversized,  // more than 1 MiB
    garbage,    // a line that is not JSON
    wrongID     // the reply of another request
};

/// The fault of this name: "slow", "silent", "hang-up", "oversized", "garbage" or "wrong-id".
std::optional<Fault> faultNamed(std::string_view name);

/// What to send in place of the reply; empty for silence.
std::optional<std::string> faultyReply(Fault fault, const std::string& reply);

}  // namespace quorvantis::standin
