#pragma once

#include <string>
#include <string_view>

#include "support/Files.h"
#include "support/JSONRecord.h"

namespace quorvantis::HelperIO {

namespace detail {
bool writeLine(std::string json);
}

/// Writes the members, keys and values in turn, as one line to standard output: a compact JSON object, in one
/// write. False once standard output takes no more.
template <class... KeysAndValues>
bool writeLine(const KeysAndValues&... members) {
    JSONWriter writer(Slashes::escaped);
    writer.object(members...);
    return detail::writeLine(writer.take());
}

/// Writes the message and a line feed to standard error, in one write.
void error(std::string_view message);

/// Reads a record from a JSON file. Throws FileError or DecodingError.
template <Record R>
R readJSON(const std::string& path) {
    return decodedRecord<R>(readFile(path));
}

/// The text in single quotes, as one word for a POSIX shell (XCU 2.2.2).
std::string shellQuoted(std::string_view text);

/// The SHA-256 of the bytes as 64 lower-case hexadecimal digits.
std::string sha256(std::string_view data);

/// The same, of a whole file. Throws FileError.
std::string sha256FileAt(const std::string& path);

}  // namespace quorvantis::HelperIO
