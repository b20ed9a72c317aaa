#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

#include "imaging/DecodedPixels.h"
#include "platform/Descriptors.h"

namespace quorvantis {

/// A batch of pictures that are decoded and hashed within one timeout. On macOS the system decodes them in
/// this process, one after the other. On Linux each has a process of its own; as many run side by side as
/// there are processors, up to four. What fails there is tried again at the end, one at a time and with more
/// memory and processor time, so that a costly picture takes nothing from the others.
class DecodingBatch {
  public:
    /// Receives the result; empty if the picture could not be decoded in time.
    using Done = std::function<void(const std::optional<DecodedPixels>&)>;

    /// The timeout starts now and covers the whole batch. On macOS it is checked only before each picture:
    /// decoding that has begun is not interrupted.
    explicit DecodingBatch(std::chrono::milliseconds timeout);
    DecodingBatch(const DecodingBatch&) = delete;
    DecodingBatch& operator=(const DecodingBatch&) = delete;
    ~DecodingBatch();

    /// Starts decoding the open file; blocks while the maximum number of decoders is running. `done` is
    /// called exactly once: here, in a later `start`, or in `finish`. The file must stay open until then, and
    /// `done` must not throw.
    void start(const platform::Descriptor& file, Done done);

    /// Blocks until every picture that was started is done.
    void finish();

  private:
    struct Work;
    std::unique_ptr<Work> work_;
};

}  // namespace quorvantis
