#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <utility>

#include "facts/Bytes.h"
#include "facts/Formats.h"
#include "support/UTF8.h"

namespace quorvantis::standin {

namespace {

constexpr std::size_t tagsStart = 128, recordsStart = 16, entrySize = 12;
constexpr std::uint32_t longest = 1024;  // bytes

Bytes descriptionTag(const Bytes& profile) {
    const std::size_t count = profile.number(tagsStart, 4);
    for (std::size_t i = 0; i < count; ++i) {
        const Bytes entry = profile.part(tagsStart + 4 + i * entrySize, entrySize);
        if (entry.size() < entrySize) break;
        if (entry.part(0, 4).text() == "desc") return profile.part(entry.number(4, 4), entry.number(8, 4));
    }
    return profile.part(0, 0);
}

std::string localizedText(const Bytes& tag) {
    Bytes chosen = tag.part(recordsStart, entrySize);
    const std::size_t count = tag.number(8, 4);
    for (std::size_t i = 0; i < count; ++i) {
        const Bytes record = tag.part(recordsStart + i * entrySize, entrySize);
        if (record.size() < entrySize) break;
        if (record.part(0, 2).text() == "en") chosen = record;
    }
    return tag.part(chosen.number(8, 4), std::min(chosen.number(4, 4), longest)).characters(2);
}

std::string description(const Bytes& tag) {
    if (tag.part(0, 4).text() == "mluc") return localizedText(tag);
    if (tag.part(0, 4).text() == "desc")
        return tag.part(12, std::min(tag.number(8, 4), longest)).characters(1);
    return "";
}

}  // namespace

std::optional<std::string> profileDescription(std::span<const std::uint8_t> profile) {
    std::string text = description(descriptionTag(Bytes(profile)));
    return !text.empty() && isValidUTF8(text) ? std::optional(std::move(text)) : std::nullopt;
}

}  // namespace quorvantis::standin
