#pragma once

#include <string>
#include <string_view>

namespace quorvantis::HelperIO {

/// The text as one line of UTF-8: U+FFFD stands for control characters and for what is not UTF-8.
std::string oneLine(std::string_view text);

/// Writes the message, as one line, and a line feed to standard error, in one write.
void error(std::string_view message);

/// Quotes the text as one word for a POSIX shell, in single quotes (XCU 2.2.2).
std::string shellQuoted(std::string_view text);

/// The SHA-256 of the bytes as 64 lower-case hexadecimal digits.
std::string sha256(std::string_view data);

/// The SHA-256 of a file's content, in the same form. Throws FileError.
std::string sha256FileAt(const std::string& path);

}  // namespace quorvantis::HelperIO
