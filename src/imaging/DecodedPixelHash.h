#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <vector>

#include "imaging/DecodedPixels.h"
#include "platform/Descriptor.h"

namespace quorvantis {

/// Decodes pictures and hashes their pixels, several side by side where the system decodes in processes of
/// their own: as many as there are processors, at most four.
class DecodedPixelHash {
  public:
    /// Takes the result: nothing when the file is no picture that can be decoded.
    using Done = std::function<void(const std::optional<DecodedPixels>&)>;

    /// `patience` bounds the time from here on, for all pictures in all; what is not done by then has no
    /// result.
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
    struct Decoder;

    void collect();

    std::vector<Decoder> running_;
    std::chrono::steady_clock::time_point deadline_;
};

}  // namespace quorvantis
