#pragma once

#include "broker/BrokerIdentity.h"
#include "support/JSON.h"
#include "support/JSONWriter.h"

namespace quorvantis::QuorvantisMCP {

/// Takes no arguments. Answers "connected" true, "agent", and what the broker says of itself, its keys
/// renamed to snake_case at every level. Throws HelperFailure.
JSONText getIntegrationStatus(JSON arguments, const BrokerIdentity& identity);

}  // namespace quorvantis::QuorvantisMCP
