#include "imaging/DecodedPixelHash.h"

#include <algorithm>
#include <poll.h>
#include <thread>
#include <vector>

#include "imaging/linux/DecoderProcess.h"

namespace quorvantis {

using Clock = std::chrono::steady_clock;

namespace {

struct Decoder {
    DecoderProcess process;
    DecodedPixelHash::Done done;
};

std::size_t places() {
    return std::clamp(std::thread::hardware_concurrency(), 1U, 4U);
}

}  // namespace

struct DecodedPixelHash::Work {
    Clock::time_point deadline;
    std::vector<Decoder> running = {};

    /// Waits until one or more decoders have ended, or the time has, and hands on their results.
    void collect();
};

DecodedPixelHash::DecodedPixelHash(std::chrono::milliseconds patience)
    : work_(new Work{.deadline = Clock::now() + patience}) {}

DecodedPixelHash::~DecodedPixelHash() = default;

void DecodedPixelHash::start(const platform::Descriptor& file, Done done) {
    while (work_->running.size() >= places()) work_->collect();
    auto process = Clock::now() < work_->deadline ? DecoderProcess::start(file) : std::nullopt;
    if (!process) return done(std::nullopt);
    work_->running.push_back({std::move(*process), std::move(done)});
}

void DecodedPixelHash::finish() {
    while (!work_->running.empty()) work_->collect();
}

void DecodedPixelHash::Work::collect() {
    std::vector<pollfd> outputs;
    for (const auto& decoder : running) outputs.push_back({decoder.process.output(), POLLIN, 0});
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
    // When it fails, nothing has happened as far as we know; the time is looked at all the same.
    static_cast<void>(poll(outputs.data(), outputs.size(), static_cast<int>(std::max<long>(left, 0))));
    const bool late = Clock::now() >= deadline;
    std::vector<Decoder> still;
    for (std::size_t i = 0; i < running.size(); ++i) {
        auto& [process, done] = running[i];
        if (outputs[i].revents != 0 ? process.readSome() : !late) {
            still.push_back(std::move(running[i]));
        } else {
            done(process.result());
        }
    }
    running = std::move(still);
}

}  // namespace quorvantis
