#include "imaging/DecodedPixelHash.h"

#include <algorithm>
#include <poll.h>
#include <thread>

#include "imaging/linux/DecoderProcess.h"

namespace quorvantis {

using Clock = std::chrono::steady_clock;

struct DecodedPixelHash::Decoder {
    DecoderProcess process;
    Done done;
};

namespace {

std::size_t places() {
    return std::clamp(std::thread::hardware_concurrency(), 1U, 4U);
}

}  // namespace

DecodedPixelHash::DecodedPixelHash(std::chrono::milliseconds patience) : deadline_(Clock::now() + patience) {}

DecodedPixelHash::~DecodedPixelHash() = default;

void DecodedPixelHash::start(const platform::Descriptor& file, Done done) {
    while (running_.size() >= places()) collect();
    auto process = Clock::now() < deadline_ ? DecoderProcess::start(file) : std::nullopt;
    if (!process) return done(std::nullopt);
    running_.push_back({std::move(*process), std::move(done)});
}

void DecodedPixelHash::finish() {
    while (!running_.empty()) collect();
}

/// Waits until one or more decoders have ended, or the time has, and hands on their results.
void DecodedPixelHash::collect() {
    std::vector<pollfd> outputs;
    for (const auto& decoder : running_) outputs.push_back({decoder.process.output(), POLLIN, 0});
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline_ - Clock::now()).count();
    // When it fails, nothing has happened as far as we know; the time is looked at all the same.
    static_cast<void>(poll(outputs.data(), outputs.size(), static_cast<int>(std::max<long>(left, 0))));
    const bool late = Clock::now() >= deadline_;
    std::vector<Decoder> still;
    for (std::size_t i = 0; i < running_.size(); ++i) {
        auto& [process, done] = running_[i];
        if (outputs[i].revents != 0 ? process.readSome() : !late) {
            still.push_back(std::move(running_[i]));
        } else {
            done(process.result());
        }
    }
    running_ = std::move(still);
}

}  // namespace quorvantis
