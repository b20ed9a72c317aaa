#pragma once

#include <string>

namespace quorvantis::harness {

/// Holds a session with the real server as it is written down, and compares:
///
///     # A comment.
///     -> a line sent to the server
///     -| the last line, without line feed
///     <- the exact answer
///     broker <- a request of the server, without what every request has
///     broker -> the broker's reply, without what every reply has
///
/// \xHH stands for one byte. Without broker lines there is no broker.
void playTranscript(const std::string& text);

}  // namespace quorvantis::harness
