#include "imaging/DecodingBatch.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <optional>
#include <poll.h>
#include <thread>
#include <utility>
#include <vector>

#include "imaging/linux/DecoderProcess.h"
#include "platform/Descriptors.h"

namespace quorvantis {

using Clock = std::chrono::steady_clock;

namespace {

struct Decoder {
    DecoderProcess process;
    DecodingBatch::Done done;
};

std::size_t maximumDecoders() {
    return std::clamp(std::thread::hardware_concurrency(), 1U, 4U);
}

}  // namespace

struct DecodingBatch::Work {
    Clock::time_point deadline;
    std::vector<Decoder> running = {};

    /// Blocks until a decoder ends or the deadline passes, then reports the results of all that are over.
    void collect();
};

DecodingBatch::DecodingBatch(std::chrono::milliseconds timeout)
    : work_(new Work{.deadline = Clock::now() + timeout}) {}

DecodingBatch::~DecodingBatch() = default;

void DecodingBatch::start(const platform::Descriptor& file, Done done) {
    while (work_->running.size() >= maximumDecoders()) work_->collect();
    auto process = Clock::now() < work_->deadline ? DecoderProcess::start(file) : std::nullopt;
    if (!process) return done(std::nullopt);
    work_->running.push_back({std::move(*process), std::move(done)});
}

void DecodingBatch::finish() {
    while (!work_->running.empty()) work_->collect();
}

void DecodingBatch::Work::collect() {
    std::vector<pollfd> outputs;
    for (const auto& decoder : running) outputs.push_back({decoder.process.output(), POLLIN, 0});
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
    // If poll fails, `revents` stays 0 and only the deadline counts.
    static_cast<void>(poll(outputs.data(), outputs.size(), static_cast<int>(std::max<long>(left, 0))));
    const bool timedOut = Clock::now() >= deadline;
    std::vector<Decoder> stillRunning;
    for (std::size_t i = 0; i < running.size(); ++i) {
        auto& [process, done] = running[i];
        if (outputs[i].revents != 0 ? process.readSome() : !timedOut) {
            stillRunning.push_back(std::move(running[i]));
        } else {
            done(process.result());
        }
    }
    running = std::move(stillRunning);
}

}  // namespace quorvantis
