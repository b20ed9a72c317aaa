#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "json/JSON.h"
#include "json/JSONWriter.h"

namespace quorvantis {

namespace HelperIO {

/// Writes the JSON text and a line feed to standard output, in one write. After a write that failed nothing
/// more is written.
void writeLine(std::string json);

}  // namespace HelperIO

/// The messages that the session sends: JSON-RPC 2.0 objects on standard output, one per line.
namespace QuorvantisMCP {

/// The number of containers around a tool's result in its response: the message, and "result".
inline constexpr std::size_t containersAroundResult = 2;

/// Writes a message from alternating keys and values.
template <class... KeysAndValues>
void writeMessage(const KeysAndValues&... members) {
    JSONWriter writer(Slashes::escaped);
    writer.object("jsonrpc", "2.0", members...);
    HelperIO::writeLine(writer.take());
}

template <class Result>
void reply(JSON id, const Result& result) {
    writeMessage("id", id, "result", result);
}

void failure(JSON id, int code, std::string_view message);
void notifyToolsListChanged();

}  // namespace QuorvantisMCP

}  // namespace quorvantis
