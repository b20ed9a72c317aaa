#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <vector>

namespace quorvantis::doctor {

/// A short session with a server.
struct ServerTrial {
    std::string version;                // as the server gives it; empty unless it opened a session
    std::size_t toolCount = 0;          // that it lists
    std::chrono::milliseconds time{0};  // from its start to its end
    std::string complaint;              // its first line that is not an answer
};

/// Starts the server, opens a session, asks for the tools, and ends it. The session is not recorded. A server
/// that has not ended after 10 seconds is killed. Throws std::system_error if it cannot be started.
ServerTrial tryServer(const std::string& executable, const std::vector<std::string>& arguments);

/// What an image decoder did with a picture of one pixel.
struct DecoderTrial {
    bool isRight = false;      // it gave the known hash
    bool isSandboxed = false;  // its system calls were filtered while it had the picture
};

/// Tries the image decoder at the path, on Linux. Throws std::system_error if it cannot be started.
DecoderTrial tryDecoder(const std::string& path);

/// Whether this process decodes the picture to the known hash, with the system's decoder or one of its own.
bool decodesPictures();

}  // namespace quorvantis::doctor
