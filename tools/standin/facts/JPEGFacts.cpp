#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "decoder/picture/Orientation.h"
#include "facts/Bytes.h"
#include "facts/Formats.h"
#include "facts/PictureFacts.h"

namespace quorvantis::standin {

namespace {

using namespace std::string_view_literals;

constexpr std::uint32_t firstFrame = 0xC0, lastFrame = 0xCF, huffmanTables = 0xC4, extension = 0xC8,
                        arithmeticTables = 0xCC, endOfImage = 0xD9, startOfScan = 0xDA, app1 = 0xE1,
                        app2 = 0xE2;
constexpr auto profileMark = "ICC_PROFILE\0"sv;

bool isFrame(std::uint32_t marker) {
    return marker >= firstFrame && marker <= lastFrame && marker != huffmanTables && marker != extension &&
           marker != arithmeticTables;
}

class Reader {
  public:
    explicit Reader(const Bytes& file) {
        std::size_t at = 2;
        while (file.byte(at) == 0xFF) at = next(file, at);
    }

    PictureFacts facts() const {
        PictureFacts facts = facts_;
        facts.profileName = profileDescription(profile_);
        return facts;
    }

  private:
    /// The position behind the segment, or the last one before the pixels.
    std::size_t next(const Bytes& file, std::size_t at) {
        const auto marker = file.byte(at + 1);
        const std::size_t size = file.number(at + 2, 2);
        if (marker == 0xFF) return at + 1;
        if (marker == startOfScan || marker == endOfImage || size < 2) return file.size();
        take(marker, file.part(at + 4, size - 2));
        return at + 2 + size;
    }

    void take(std::uint32_t marker, const Bytes& data) {
        if (isFrame(marker)) takeFrame(data);
        if (marker == app1 && data.text().starts_with(decoder::exifMark))
            facts_.orientation = decoder::exifOrientation(data.span());
        if (marker == app2 && data.text().starts_with(profileMark)) addToProfile(data);
    }

    void takeFrame(const Bytes& data) {
        const auto components = data.byte(5);
        facts_.bitsPerComponent = data.byte(0);
        facts_.hasAlpha = false;
        facts_.colorModel = components == 1 ? "Gray" : components == 4 ? "CMYK" : "RGB";
        facts_.frameCount = 1;
    }

    void addToProfile(const Bytes& data) {
        const auto part = data.part(profileMark.size() + 2).span();  // behind its number and their count
        profile_.insert(profile_.end(), part.begin(), part.end());
    }

    PictureFacts facts_;
    std::vector<std::uint8_t> profile_;
};

}  // namespace

PictureFacts jpegFacts(std::span<const std::uint8_t> file) {
    return Reader(Bytes(file)).facts();
}

}  // namespace quorvantis::standin
