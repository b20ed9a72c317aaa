#pragma once

#include "broker/BrokerIdentity.h"

namespace quorvantis::QuorvantisMCP {

/// Serves one client on standard input and output until standard input ends. Requests are handled
/// sequentially, in the order received. A line that is not a request is ignored.
void serve(const BrokerIdentity& identity);

}  // namespace quorvantis::QuorvantisMCP
