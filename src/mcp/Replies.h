#pragma once

#include <string>
#include <string_view>

#include "json/JSON.h"
#include "json/JSONWriter.h"

namespace quorvantis {

namespace HelperIO {

/// Writes the JSON text of one object and a line feed to standard output, in one write. Returns false once
/// standard output takes no more.
bool writeLine(std::string json);

}  // namespace HelperIO

/// The messages of the session: JSON-RPC 2.0 objects on standard output, one a line. Each operation returns
/// false once standard output takes no more.
namespace QuorvantisMCP {

/// The containers around a tool's result in its answer: the message, and "result".
inline constexpr std::size_t containersAroundResult = 2;

/// Writes the members, keys and values in turn, as one message.
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
