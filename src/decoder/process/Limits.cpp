#include "decoder/process/Limits.h"

#include <algorithm>
#include <chrono>
#include <cstdint>

namespace quorvantis::decoder {

using std::chrono::milliseconds;

namespace {

constexpr std::uint64_t mebibyte = 1 << 20;
constexpr Limits firstTry = {384 * mebibyte, milliseconds(3000)};
constexpr Limits secondTry = {1536 * mebibyte, milliseconds(30'000)};
constexpr Limits perKibibyte = {64 * mebibyte, milliseconds(500)};  // of the file, a part counts as a whole

}  // namespace

Limits limits(std::uint64_t fileSize, bool alone) {
    const Limits most = alone ? secondTry : firstTry;
    const std::uint64_t size =
        std::clamp<std::uint64_t>(fileSize, 1, mebibyte);  // any more allows everything
    const auto kibibytes = (size + 1023) / 1024;
    return {std::min(most.memory, kibibytes * perKibibyte.memory),
            std::min(most.time, static_cast<int>(kibibytes) * perKibibyte.time)};
}

}  // namespace quorvantis::decoder
