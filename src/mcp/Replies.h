#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "json/JSON.h"
#include "json/JSONWriter.h"

namespace quorvantis {

namespace HelperIO {

/// Writes the JSON text and a line feed to standard output, in one write. Returns false if standard output is
/// closed or broken.
bool writeLine(std::string json);

}  // namespace HelperIO

/// The messages that the session sends: JSON-RPC 2.0 objects on standard output, one per line. Each function
/// returns false if standard output is closed or broken.
namespace QuorvantisMCP {

/// The number of containers around a tool's result in its response: the message, and "result".
inline constexpr std::size_t containersAroundResult = 2;

/// Writes a message from alternating keys and values.
template <class... KeysAndValues>
bool writeMessage(const KeysAndValues&... members) {
    JSONWriter writer(Slashes::escaped);
    writer.object("jsonrpc", "2.0", members...);
    return HelperIO::writeLine(writer.take());
}

template <class Result>
bool reply(JSON id, const Result& result) {
    return writeMessage("id", id, "result", result);
}

bool failure(JSON id, int code, std::string_view message);
bool notifyToolsListChanged();

}  // namespace QuorvantisMCP

}  // namespace quorvantis
