#include <bit>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <span>

#include "decoder/picture/Orientation.h"
#include "facts/Bytes.h"
#include "facts/Formats.h"
#include "facts/PictureFacts.h"

namespace quorvantis::standin {

namespace {

enum Tag : std::uint32_t {
    bitsPerSample = 258,
    photometric = 262,
    extraSamples = 338,
    profile = 34675,
};

enum Photometric : std::uint32_t {
    whiteIsZero = 0,
    blackIsZero = 1,
    palette = 3,
    separated = 5,
    lab = 8,
    iccLab = 9,
};

constexpr std::uint32_t shortType = 3;
constexpr std::size_t entrySize = 12, mostPages = 65'536;

/// One picture's entries.
class Directory {
  public:
    Directory(const Bytes& file, std::size_t at) : file_(file), at_(at), count_(file.number(at, 2)) {}

    std::uint32_t next() const { return file_.number(at_ + 2 + count_ * entrySize, 4); }

    /// Its bytes; none when it is not there.
    Bytes value(Tag tag) const {
        for (std::size_t entry = at_ + 2; entry < at_ + 2 + count_ * entrySize; entry += entrySize)
            if (file_.number(entry, 2) == tag) return valueOf(entry);
        return file_.part(0, 0);
    }

    /// The first of its numbers, which are of 16 bits in all of the tags but the profile.
    std::optional<std::uint32_t> number(Tag tag) const {
        const Bytes bytes = value(tag);
        return bytes.size() < 2 ? std::nullopt : std::optional(bytes.number(0, 2));
    }

  private:
    Bytes valueOf(std::size_t entry) const {
        const std::size_t unit = file_.number(entry + 2, 2) == shortType ? 2 : 1;
        const std::size_t size = unit * file_.number(entry + 4, 4);
        return file_.part(size <= 4 ? entry + 8 : file_.number(entry + 8, 4), size);
    }

    const Bytes& file_;
    std::size_t at_;
    std::size_t count_;
};

const char* colorModel(std::uint32_t photometric) {
    switch (photometric) {
        case whiteIsZero:
        case blackIsZero: return "Gray";
        case separated: return "CMYK";
        case lab:
        case iccLab: return "Lab";
        default: return "RGB";
    }
}

std::int64_t pageCount(const Bytes& file) {
    std::set<std::uint32_t> pages;
    auto at = file.number(4, 4);
    while (at != 0 && at < file.size() && pages.size() < mostPages && pages.insert(at).second)
        at = Directory(file, at).next();
    return static_cast<std::int64_t>(pages.size());
}

}  // namespace

PictureFacts tiffFacts(std::span<const std::uint8_t> bytes) {
    const Bytes file(bytes, bytes[0] == 'I' ? std::endian::little : std::endian::big);
    if (file.number(2, 2) != 42) return {};
    const Directory first(file, file.number(4, 4));
    const auto colours = first.number(photometric).value_or(blackIsZero);
    const auto extra = first.number(extraSamples).value_or(0);
    return {.bitsPerComponent = colours == palette ? 8 : first.number(bitsPerSample).value_or(1),
            .hasAlpha = extra == 1 || extra == 2,
            .colorModel = colorModel(colours),
            .profileName = profileDescription(first.value(profile).span()),
            .orientation = decoder::exifOrientation(bytes),
            .frameCount = pageCount(file)};
}

}  // namespace quorvantis::standin
