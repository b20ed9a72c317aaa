#pragma once

#include <optional>
#include <string>

#include "imaging/DecodedPixels.h"
#include "platform/Descriptors.h"
#include "platform/Spawn.h"

namespace quorvantis {

/// A running quorvantis-image-decoder: a process of its own, because pictures come from anywhere and codecs
/// have faults. It is killed and reaped when this goes.
class DecoderProcess {
  public:
    /// Starts one that reads the picture from the open file; nothing when the system or the installation has
    /// none.
    static std::optional<DecoderProcess> start(const platform::Descriptor& file);

    DecoderProcess(DecoderProcess&&) noexcept = default;
    DecoderProcess& operator=(DecoderProcess&&) = delete;
    ~DecoderProcess() { process_.kill(); }  // it has nothing more to say

    /// Its output, to poll for reading.
    int output() const { return output_.get(); }
    /// Reads what has arrived. False at the end of the output, or when it is more than a record can be.
    bool readSome();
    /// What the record read so far tells; nothing when it is not a whole one.
    std::optional<DecodedPixels> result() const { return DecodedPixels::parse(record_); }

  private:
    DecoderProcess(platform::Child process, platform::Descriptor output)
        : process_(std::move(process)), output_(std::move(output)) {}

    platform::Child process_;
    platform::Descriptor output_;
    std::string record_;
};

}  // namespace quorvantis
