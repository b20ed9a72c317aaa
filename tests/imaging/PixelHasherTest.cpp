#include "imaging/PixelHasher.h"

#include <gtest/gtest.h>

#include "support/HelperIO.h"

namespace quorvantis {

TEST(PixelHasherTest, AcceptsPicturesWithinTheBudget) {
    struct Case {
        std::int64_t width, height;
        bool within;
    };
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    for (const auto& [width, height, within] :
         {Case{1, 1, true}, Case{10'000, 6'000, true}, Case{60'000'000, 1, true}, Case{1, 60'000'000, true},
          Case{7'745, 7'746, true}, Case{7'746, 7'746, false}, Case{10'001, 6'000, false},
          Case{60'000'001, 1, false}, Case{1, 60'000'001, false}, Case{0, 5, false}, Case{5, 0, false},
          Case{-5, -5, false}, Case{-1, 5, false}, Case{most, most, false}, Case{most, 2, false}}) {
        EXPECT_EQ(isWithinPixelBudget(width, height), within) << width << "x" << height;
    }
}

TEST(PixelHasherTest, HashesTheHeaderAndThePixels) {
    const std::string pixels = "\x01\x02\x03\xff\x04\x05\x06\xff";
    PixelHasher hasher(2, 1);
    hasher.update(std::as_bytes(std::span(pixels).first(3)));
    hasher.update(std::as_bytes(std::span(pixels).subspan(3)));
    EXPECT_EQ(hasher.finish(), HelperIO::sha256("2x1:rgba8-srgb:" + pixels));
}

TEST(PixelHasherTest, HashesNothingButTheWholePicture) {
    for (const auto size : {0u, 23u, 25u, 48u}) {
        const std::vector<std::byte> pixels(size);
        PixelHasher hasher(2, 3);
        hasher.update(pixels);
        EXPECT_EQ(hasher.finish(), std::nullopt) << size;
    }
}

}  // namespace quorvantis
