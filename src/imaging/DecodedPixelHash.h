#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

#include "imaging/DecodedPixels.h"
#include "platform/Descriptors.h"

namespace quorvantis {

/// Decodes pictures and hashes their pixels: in this process, one after the other, where the system itself
/// decodes pictures; elsewhere in processes of their own, as many side by side as there are processors, at
/// most four.
class DecodedPixelHash {
  public:
    /// Takes the result: nothing when the file is no picture that can be decoded.
    using Done = std::function<void(const std::optional<DecodedPixels>&)>;

    /// `patience` bounds the time from here on, for all pictures in all; what is not begun (in this process)
    /// or not done (elsewhere) by then has no result.
    explicit DecodedPixelHash(std::chrono::milliseconds patience);
    DecodedPixelHash(const DecodedPixelHash&) = delete;
    DecodedPixelHash& operator=(const DecodedPixelHash&) = delete;
    ~DecodedPixelHash();

    /// Starts with the picture in the file, after waiting for a place. `done` is called once: here, in a
    /// later `start`, or in `finish`, and keeps the file open until then. It must not throw.
    void start(const platform::Descriptor& file, Done done);

    /// Waits for all that were started.
    void finish();

  private:
    struct Work;
    std::unique_ptr<Work> work_;
};

}  // namespace quorvantis
