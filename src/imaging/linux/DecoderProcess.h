#pragma once

#include <optional>
#include <string>
#include <utility>

#include "imaging/DecodedPixels.h"
#include "platform/Descriptors.h"
#include "platform/Spawn.h"

namespace quorvantis {

/// A running quorvantis-image-decoder. Decoding has its own process because pictures are untrusted and codecs
/// have bugs. The destructor kills and reaps it.
class DecoderProcess {
  public:
    /// A decoder that runs `alone` may take four times as much memory, and more time.
    enum class Kind { oneOfFour, alone };

    /// Starts a decoder for the picture in the open file; empty if it cannot be started.
    static std::optional<DecoderProcess> start(const platform::Descriptor& file, Kind kind);

    DecoderProcess(DecoderProcess&&) noexcept = default;
    DecoderProcess& operator=(DecoderProcess&&) = delete;
    ~DecoderProcess() { process_.kill(); }  // `process_` then reaps it

    /// The descriptor of its output, to be polled for reading.
    int output() const { return output_.get(); }
    /// Reads output that has arrived. Returns false at its end, and when it exceeds the maximum record size.
    bool readSome();
    /// The result; empty unless the output read so far is one whole record.
    std::optional<DecodedPixels> result() const { return DecodedPixels::parse(record_); }

  private:
    DecoderProcess(platform::Child process, platform::Descriptor output)
        : process_(std::move(process)), output_(std::move(output)) {}

    platform::Child process_;
    platform::Descriptor output_;
    std::string record_;
};

}  // namespace quorvantis
