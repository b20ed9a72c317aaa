#pragma once

#include <string_view>

#include "support/HelperIO.h"
#include "support/JSON.h"

/// The answers of the session: JSON-RPC 2.0 messages on standard output, one a line. Each operation answers
/// false once standard output takes no more.
namespace quorvantis::QuorvantisMCP {

/// The containers around a tool's result in its answer: the message, and "result".
inline constexpr std::size_t containersAroundResult = 2;

template <class Result>
bool reply(JSON id, const Result& result) {
    return HelperIO::writeLine("jsonrpc", "2.0", "id", id, "result", result);
}

bool failure(JSON id, int code, std::string_view message);
bool notifyToolsListChanged();

}  // namespace quorvantis::QuorvantisMCP
