#include "decoder/picture/Orientation.h"

#include <gtest/gtest.h>
#include <string>

namespace quorvantis::decoder {

using namespace std::string_literals;

TEST(OrientationTest, IsReadFromExif) {
    struct Case {
        std::string exif;
        int orientation;
    };
    const std::string head = "II*\0\x08\0\0\0"s;
    for (const auto& [exif, orientation] :
         {Case{head + "\1\0\x12\1\3\0\1\0\0\0\6\0\0\0"s, 6},
          Case{"MM\0*\0\0\0\x08\0\1\1\x12\0\3\0\0\0\1\0\5\0\0"s, 5},
          Case{head + "\2\0\x0f\1\2\0\1\0\0\0A\0\0\0\x12\1\3\0\1\0\0\0\3\0\0\0"s, 3},
          Case{head + "\1\0\x12\1\3\0\1\0\0\0\0\0\0\0"s, 1},          // below the values
          Case{head + "\1\0\x12\1\3\0\1\0\0\0\x09\0\0\0"s, 1},        // above them
          Case{head + "\1\0\x12\1\4\0\1\0\0\0\6\0\0\0"s, 1},          // of another type
          Case{head + "\0\0\x12\1\3\0\1\0\0\0\6\0\0\0"s, 1},          // beyond the directory
          Case{"II+\0\x08\0\0\0\1\0\x12\1\3\0\1\0\0\0\6\0\0\0"s, 1},  // not TIFF
          Case{"IM*\0\x08\0\0\0\1\0\x12\1\3\0\1\0\0\0\6\0\0\0"s, 1}, Case{"II*\0\xff\xff\xff\xff"s, 1},
          Case{head + "\xff\xff\x12\1\3"s, 1}, Case{"II*"s, 1}, Case{""s, 1}}) {
        const std::span bytes(reinterpret_cast<const std::uint8_t*>(exif.data()), exif.size());
        EXPECT_EQ(exifOrientation(bytes).value_or(upright), orientation) << testing::PrintToString(exif);
    }
}

}  // namespace quorvantis::decoder
