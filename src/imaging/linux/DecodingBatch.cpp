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

using Kind = DecoderProcess::Kind;

// Each keeps its file open.
constexpr std::size_t maximumLeftOver = 64;

struct Picture {
    const platform::Descriptor* file;
    DecodingBatch::Done done;
};

struct Decoder {
    DecoderProcess process;
    Kind kind;
    Picture picture;
};

std::size_t maximumDecoders() {
    return std::clamp(std::thread::hardware_concurrency(), 1U, 4U);
}

}  // namespace

struct DecodingBatch::Work {
    Clock::time_point deadline;
    std::vector<Decoder> running = {};
    std::vector<Picture> leftOver = {};  // by decoders that were one of four

    bool isOver() const { return Clock::now() >= deadline; }
    void start(Picture picture, Kind kind);
    /// Blocks until a decoder ends or the deadline passes, then takes the results of all that are over.
    void collect();
    void take(Decoder decoder);
    void finish();
};

DecodingBatch::DecodingBatch(std::chrono::milliseconds timeout)
    : work_(new Work{.deadline = Clock::now() + timeout}) {}

DecodingBatch::~DecodingBatch() = default;

void DecodingBatch::start(const platform::Descriptor& file, Done done) {
    while (work_->running.size() >= maximumDecoders()) work_->collect();
    if (work_->leftOver.size() >= maximumLeftOver) work_->finish();
    work_->start({&file, std::move(done)}, Kind::oneOfFour);
}

void DecodingBatch::finish() {
    work_->finish();
}

void DecodingBatch::Work::start(Picture picture, Kind kind) {
    auto process = isOver() ? std::nullopt : DecoderProcess::start(*picture.file, kind);
    if (!process) return picture.done(std::nullopt);
    running.push_back({std::move(*process), kind, std::move(picture)});
}

void DecodingBatch::Work::finish() {
    while (!running.empty()) collect();
    for (Picture& picture : std::exchange(leftOver, {})) {
        start(std::move(picture), Kind::alone);
        while (!running.empty()) collect();
    }
}

void DecodingBatch::Work::collect() {
    std::vector<pollfd> outputs;
    for (const auto& decoder : running) outputs.push_back({decoder.process.output(), POLLIN, 0});
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
    // If poll fails, `revents` stays 0 and only the deadline counts.
    static_cast<void>(poll(outputs.data(), outputs.size(), static_cast<int>(std::max<long>(left, 0))));
    const bool timedOut = isOver();
    std::vector<Decoder> seen = std::exchange(running, {});
    for (std::size_t i = 0; i < seen.size(); ++i) {
        const bool goesOn = outputs[i].revents != 0 ? seen[i].process.readSome() : !timedOut;
        goesOn ? running.push_back(std::move(seen[i])) : take(std::move(seen[i]));
    }
}

void DecodingBatch::Work::take(Decoder decoder) {
    const auto pixels = decoder.process.result();
    if (!pixels && decoder.kind == Kind::oneOfFour && !isOver())
        leftOver.push_back(std::move(decoder.picture));
    else
        decoder.picture.done(pixels);
}

}  // namespace quorvantis
