#include "imaging/linux/DecoderProcess.h"

#include <array>
#include <cstddef>
#include <errno.h>
#include <optional>
#include <string>
#include <system_error>
#include <unistd.h>
#include <utility>
#include <vector>

#include "imaging/DecodedPixels.h"
#include "imaging/DecoderPaths.h"
#include "platform/Descriptors.h"
#include "platform/Process.h"
#include "platform/Spawn.h"

namespace quorvantis {

namespace {

using platform::Descriptor;

/// Empty when there is none.
std::string decoderPath() {
    for (const std::string& path : imageDecoderPaths(platform::executablePath(getpid()).value_or("/")))
        if (access(path.c_str(), X_OK) == 0) return path;
    return {};
}

/// The decoder gets the picture as its descriptor 3, the pipe and nothing else: never a stream of the
/// session.
platform::Spawn decoder(const Descriptor& picture, const Descriptor& pipe, DecoderProcess::Kind kind) {
    constexpr int nullDevice = platform::Spawn::nullDevice;
    return {.executable = decoderPath(),
            .arguments = kind == DecoderProcess::Kind::alone ? std::vector<std::string>{"alone"}
                                                             : std::vector<std::string>{},
            .environment = {},
            .descriptors = {nullDevice, pipe.get(), nullDevice, picture.get()}};
}

}  // namespace

std::optional<DecoderProcess> DecoderProcess::start(const Descriptor& file, Kind kind) {
    try {
        platform::Pipe pipe;
        auto process = decoder(file, pipe.writing, kind).start();
        return DecoderProcess(std::move(process), std::move(pipe.reading));
    } catch (const std::system_error&) {
        return std::nullopt;  // without a decoder the picture counts as undecodable
    }
}

bool DecoderProcess::readSome() {
    std::array<char, 128> buffer;
    const ssize_t count = read(output_.get(), buffer.data(), buffer.size());
    if (count < 0) return errno == EINTR;
    record_.append(buffer.data(), static_cast<std::size_t>(count));
    return count > 0 && record_.size() <= DecodedPixels::maximumRecordSize;
}

}  // namespace quorvantis
