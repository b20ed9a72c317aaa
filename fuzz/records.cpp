// Records: those that can be read from the input, and those that are filled with it, are written and read
// again the same.

#include <algorithm>
#include <cassert>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <fuzzer/FuzzedDataProvider.h>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "imaging/AttachmentIdentity.h"
#include "integration/AgentManifest.h"
#include "integration/PairingRequestRecord.h"
#include "json/CodingErrors.h"
#include "json/JSONRecord.h"
#include "state/HistoryRecords.h"
#include "state/MCPClientSession.h"
#include "state/PromptHookObservation.h"
#include "support/UTF8.h"

namespace quorvantis {

using Data = FuzzedDataProvider;

template <std::integral Integer>
static void fill(Integer& value, Data& data) {
    value = data.ConsumeIntegral<Integer>();
}
static void fill(Date& value, Data& data) {
    value = {data.ConsumeFloatingPoint<double>()};
}
static void fill(std::string& value, Data& data) {
    value = repairedUTF8(data.ConsumeRandomLengthString());
}
static void fill(UUID& value, Data& data) {
    data.ConsumeData(value.bytes.data(), value.bytes.size());
}
static void fill(PairingRequestRecord::State& value, Data& data) {
    value =
        data.PickValueInArray({PairingRequestRecord::State::pending, PairingRequestRecord::State::consumed});
}
template <class T>
static void fill(std::optional<T>& value, Data& data) {
    if (data.ConsumeBool()) fill(value.emplace(), data);
}
template <class T>
static void fill(std::vector<T>& value, Data& data) {
    while (data.ConsumeBool()) fill(value.emplace_back(), data);
}
template <Record R>
static void fill(R& record, Data& data) {
    std::apply([&](const auto&... field) { (fill(record.*field.member, data), ...); }, R::fields());
}

template <class T>
static bool areSame(const T& one, const T& other) {
    return one == other;
}
template <Record R>
static bool areSame(const std::vector<R>& one, const std::vector<R>& other) {
    return std::ranges::equal(one, other, [](const R& a, const R& b) { return areSame(a, b); });
}
template <Record R>
static bool areSame(const std::optional<R>& one, const std::optional<R>& other) {
    return one && other ? areSame(*one, *other) : !one && !other;
}
template <Record R>
static bool areSame(const R& one, const R& other) {
    const auto compare = [&](const auto&... field) {
        return (areSame(one.*field.member, other.*field.member) && ...);
    };
    return std::apply(compare, R::fields());
}

template <Record R>
static void check(const R& record) {
    assert(areSame(decodedRecord<R>(encodedRecord(record)), record));
}

template <Record R>
static void checkRead(R record, std::string_view text) {
    try {
        record = decodedRecord<R>(text);
    } catch (const DecodingError&) {
        return;
    }
    check(record);
}

}  // namespace quorvantis

using namespace quorvantis;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* input, std::size_t size) {
    const std::tuple<AgentManifest, AttachmentIdentity, HelperEntry, HelperImageMetadata, MCPClientSession,
                     PairingRequestRecord, PromptHookObservation>
        records;
    const std::string_view text(reinterpret_cast<const char*>(input), size);
    if (text.starts_with('{')) {
        std::apply([&](const auto&... record) { (checkRead(record, text), ...); }, records);
    } else {
        FuzzedDataProvider data(input, size);
        auto before = data.ConsumeIntegralInRange<std::size_t>(0, std::tuple_size_v<decltype(records)> - 1);
        const auto checkFilled = [&](auto record) {
            fill(record, data);
            check(record);
        };
        std::apply([&](const auto&... record) { ((before-- == 0 ? checkFilled(record) : void()), ...); },
                   records);
    }
    return 0;
}
