#include "ImageEntries.h"

#include <gtest/gtest.h>
#include <random>

#include "facts/PictureFacts.h"
#include "harness/TemporaryFolder.h"
#include "support/Files.h"
#include "support/UTF8.h"

namespace quorvantis::standin {

static const std::filesystem::path pictures = QUORVANTIS_PICTURES;

static HelperImageMetadata metadata(const StandinEntry& entry) {
    return entry.entry.items.at(0).representations.at(0).imageMetadata.value();
}

/// The entry of a copy of the picture.
static StandinEntry entryOf(const std::string& picture) {
    const harness::TemporaryFolder folder;
    std::filesystem::copy(pictures / picture, folder.path());
    return historyEntries(ImageLibrary(folder.path())).at(0);
}

TEST(ImageEntriesTest, TellWhatTheFileSays) {
    struct Case {
        std::string file, colours;
        std::int64_t orientation = 0, frames = 1;
    };
    for (const auto& [file, colours, orientation, frames] :
         {Case{"cut-out/palette-4.png", "8-bit RGB with alpha"},
          Case{"translucent/rgba-16.png", "16-bit RGB with alpha"},
          Case{"turned/6.png", "8-bit RGB", 6},
          Case{"gray-profile/alpha.png", "8-bit Gray with alpha, g"},
          Case{"colours/srgb.png", "8-bit RGB, sRGB IEC61966-2.1"},
          Case{"blocks/6.jpg", "8-bit Gray", 6},
          Case{"ycck/ycck.jpg", "8-bit CMYK"},
          Case{"wide-gamut/profile.jpg", "8-bit RGB, made here"},
          Case{"cut-out/animated.gif", "8-bit RGB with alpha", 0, 2},
          Case{"sixteen/plain.gif", "8-bit RGB"},
          Case{"cut-out/animated.webp", "8-bit RGB with alpha", 0, 2},
          Case{"translucent/lossless.webp", "8-bit RGB with alpha"},
          Case{"colours/srgb-profile.webp", "8-bit RGB, sRGB built-in"},
          Case{"turned/6.webp", "8-bit RGB", 6},
          Case{"inks/cmyk.tif", "8-bit CMYK"},
          Case{"bilevel/1.tif", "1-bit Gray"},
          Case{"grays/16-big-endian.tif", "16-bit Gray", 1},
          Case{"sixteen/palette.tif", "8-bit RGB"},
          Case{"gray-profile/gray.tif", "8-bit Gray, made here"},
          Case{"translucent/associated.tif", "8-bit RGB with alpha"},
          Case{"turned/6.tif", "8-bit RGB", 6}}) {
        const StandinEntry entry = entryOf(file);
        const auto more = frames > 1 ? ", " + std::to_string(frames) + " frames, " : std::string(", ");
        const auto end = ", " + colours + more + std::to_string(file_size(pictures / file)) + " bytes";
        EXPECT_TRUE(entry.detail.ends_with(end)) << file << ": " << entry.detail;
        EXPECT_EQ(metadata(entry).orientation.value_or(0), orientation) << file;
        EXPECT_EQ(metadata(entry).frameCount, frames) << file;
    }
    EXPECT_EQ(entryOf("colours/24.bmp").detail, "Image, 27 x 19, 1650 bytes");
}

TEST(ImageEntriesTest, SurviveDamagedFiles) {
    const auto check = [](const std::vector<std::uint8_t>& file) {
        const PictureFacts facts = pictureFacts(file);
        const auto orientation = facts.orientation.value_or(1);
        EXPECT_TRUE(orientation >= 1 && orientation <= 8);
        EXPECT_TRUE(isValidUTF8(facts.profileName.value_or("")));
    };
    std::mt19937 random(1);
    for (const char* name : {"gray-profile/alpha.png", "turned/6.png", "wide-gamut/profile.jpg",
                             "blocks/6.jpg", "cut-out/animated.gif", "colours/srgb-profile.webp",
                             "turned/6.webp", "turned/6.tif", "gray-profile/gray.tif"}) {
        const std::string content = readFile(pictures / name);
        for (std::size_t size = 0; size < content.size(); ++size)
            check({content.begin(), content.begin() + static_cast<std::ptrdiff_t>(size)});
        for (int round = 0; round < 2'000; ++round) {
            std::vector<std::uint8_t> damaged(content.begin(), content.end());
            for (int i = 0; i < 8; ++i)
                damaged[random() % damaged.size()] = static_cast<std::uint8_t>(random());
            check(damaged);
        }
    }
}

}  // namespace quorvantis::standin
