#pragma once

#include "broker/BrokerIdentity.h"

namespace quorvantis::QuorvantisMCP {

/// Serves one client on standard input and output until standard input ends or standard output is gone.
/// Requests are answered one after the other, in their order; a line that is no request gets no answer.
void serve(const BrokerIdentity& identity);

}  // namespace quorvantis::QuorvantisMCP
