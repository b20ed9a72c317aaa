#include <gtest/gtest.h>
#include <zlib.h>

#include "harness/TemporaryFolder.h"
#include "imaging/AttachmentIdentity.h"
#include "support/HelperIO.h"

namespace quorvantis {

using namespace std::string_literals;

static std::string bigEndian(std::size_t number, int size) {
    std::string bytes;
    for (int shift = 8 * (size - 1); shift >= 0; shift -= 8)
        bytes += static_cast<char>(number >> shift & 255);
    return bytes;
}

static std::string littleEndian(std::size_t number, int size) {
    const std::string bytes = bigEndian(number, size);
    return {bytes.rbegin(), bytes.rend()};
}

static std::string chunk(const std::string& name, const std::string& data) {
    const std::string content = name + data;
    const auto sum =
        crc32(0, reinterpret_cast<const Bytef*>(content.data()), static_cast<uInt>(content.size()));
    return bigEndian(data.size(), 4) + content + bigEndian(sum, 4);
}

static std::string deflated(const std::string& data) {
    uLongf size = compressBound(data.size());
    std::string packed(size, '\0');
    compress2(reinterpret_cast<Bytef*>(packed.data()), &size, reinterpret_cast<const Bytef*>(data.data()),
              data.size(), 9);
    return packed.substr(0, size);
}

/// All black, one bit a pixel; its rows are there as far as `rows` says.
static std::string blackPNG(std::size_t width, std::size_t height, std::size_t rows,
                            const std::string& before = "") {
    return "\x89PNG\r\n\x1a\n" + chunk("IHDR", bigEndian(width, 4) + bigEndian(height, 4) + "\1\0\0\0\0"s) +
           before + chunk("IDAT", deflated(std::string(((width + 7) / 8 + 1) * rows, '\0'))) +
           chunk("IEND", "");
}

/// 8 by 8 pixels of middle gray: a scan of the mean and `scans` of nothing, each of another frequency or bit.
static std::string progressiveJPEG(int scans) {
    const auto segment = [](char marker, const std::string& content) {
        return "\xff"s + marker + bigEndian(content.size() + 2, 2) + content;
    };
    const auto oneCode = [](char table) { return table + "\1"s + std::string(15, '\0') + '\0'; };
    std::string jpeg = "\xff\xd8" + segment('\xdb', '\0' + std::string(64, '\1')) +
                       segment('\xc2', "\x08\0\x08\0\x08\1\1\x11\0"s) + segment('\xc4', oneCode('\0')) +
                       segment('\xc4', oneCode('\x10')) + segment('\xda', "\1\1\0\0\0\0"s) + "\x7f";
    for (int scan = 0; scan < scans; ++scan) {
        const int bit = 12 - scan / 63;
        const char frequency = static_cast<char>(1 + scan % 63);
        const char bits = static_cast<char>(scan < 63 ? bit : (bit + 1) << 4 | bit);
        jpeg += segment('\xda', "\1\1\0"s + frequency + frequency + bits) + "\x7f";
    }
    return jpeg + "\xff\xd9";
}

/// Four gray pixels in a row.
static std::string tiff(std::size_t next, std::size_t samples = 1, std::size_t strip = 8,
                        std::size_t bytes = 4) {
    const auto entry = [](std::size_t tag, std::size_t value) {
        return littleEndian(tag, 2) + littleEndian(4, 2) + littleEndian(1, 4) + littleEndian(value, 4);
    };
    return "II*\0"s + littleEndian(12, 4) + "\x00\x40\x80\xff"s + littleEndian(9, 2) + entry(256, 4) +
           entry(257, 1) + entry(258, 8) + entry(259, 1) + entry(262, 1) + entry(273, strip) +
           entry(277, samples) + entry(278, 1) + entry(279, bytes) + littleEndian(next, 4);
}

static std::string gif(std::size_t screen, std::size_t frame, const std::string& data) {
    return "GIF89a" + littleEndian(screen, 2) + littleEndian(screen, 2) + "\x80\0\0\0\0\0\xff\xff\xff"s +
           "," + littleEndian(0, 4) + littleEndian(frame, 2) + littleEndian(frame, 2) + data;
}

static std::string bmp(std::size_t width, std::size_t height, std::size_t bits, const std::string& data,
                       std::size_t compression = 0) {
    const std::string palette(bits == 8 ? 1024 : 0, '\0');
    return "BM" + std::string(8, '\0') + littleEndian(54 + palette.size(), 4) + littleEndian(40, 4) +
           littleEndian(width, 4) + littleEndian(height, 4) + littleEndian(1, 2) + littleEndian(bits, 2) +
           littleEndian(compression, 4) + std::string(20, '\0') + palette + data;
}

static std::string repeated(const std::string& text, int count) {
    std::string all;
    for (int i = 0; i < count; ++i) all += text;
    return all;
}

/// Whether the text decodes as a picture.
static bool decodes(const std::string& content) {
    const harness::TemporaryFolder folder;
    harness::writeText(folder / "picture", content);
    const auto identity = HelperIO::attachmentIdentity(folder / "picture");
    EXPECT_EQ(identity.sha256, HelperIO::sha256(content));
    return identity.pixelHash.has_value();
}

TEST(HostilePicturesTest, CostTheirPixelHashAtMost) {
    const std::string nothing(40'000'000, '\0');
    const std::string bomb = chunk("iCCP", "p\0\0"s + deflated(nothing));
    const std::string comments = gif(4, 4, "").substr(0, 19) + repeated("!\xfe\4text\0"s, 200'000);
    struct Case {
        const char* what;
        std::string content;
        bool decodes;
    };
    for (const auto& [what, content, expected] :
         {Case{"png of plausible size", blackPNG(100, 100, 100), true},
          Case{"png of 10,000,000,000 pixels", blackPNG(100'000, 100'000, 1), false},
          Case{"png of the greatest sides", blackPNG(0x7fffffff, 0x7fffffff, 0), false},
          Case{"png that lacks rows", blackPNG(100, 100, 99), false},
          Case{"png with rows beyond its height", blackPNG(100, 1, 2'000'000), true},
          Case{"png with a profile of 40 MB", blackPNG(100, 100, 100, bomb), true},
          Case{"jpeg of as many scans as allowed", progressiveJPEG(99), true},
          Case{"jpeg of one more", progressiveJPEG(100), false},
          Case{"jpeg of 800 scans", progressiveJPEG(800), false},
          Case{"tiff of one directory", tiff(0), true},
          Case{"tiff with a loop of directories", tiff(12), true},
          Case{"tiff with a directory out of reach", tiff(0).replace(4, 1, "\xf0"), false},
          Case{"tiff of many samples", tiff(0, 65'535), false},
          Case{"tiff with a strip out of reach", tiff(0, 1, 0xfffffff0), false},
          Case{"tiff that claims a strip of 4 GB", tiff(0, 1, 8, 0xffffffff), true},
          Case{"gif of one pixel", gif(1, 1, "\0\2\2\x44\1\0;"s), true},
          Case{"gif whose comments do not end", comments, false},
          Case{"gif of a great screen", gif(65'535, 1, "\0\2\2\x44\1\0;"s), false},
          Case{"gif of a great frame", gif(1, 65'535, "\0\2\2\x44\1\0;"s), false},
          Case{"gif whose codes do not end", gif(4, 4, "\0\2"s + repeated("\2\x84\x84"s, 100'000)), false},
          Case{"bmp of one pixel", bmp(1, 1, 24, "abc"), true},
          Case{"bmp of the greatest sides", bmp(0x7fffffff, 0x7fffffff, 1, "abc"), false},
          Case{"bmp of the lowest height", bmp(1, 0x80000000, 24, "abc"), false},
          Case{"bmp of no pixels", bmp(0, 0, 24, "abc"), false},
          Case{"bmp of 3 bits", bmp(1, 1, 3, "abc"), false},
          Case{"bmp whose runs skip its end", bmp(3, 3, 8, "\0\2\xff\xff\0\1"s, 1), true},
          Case{"bmp whose runs do not end", bmp(3, 3, 8, "\xff\1"s, 1), false},
          Case{"ico in itself", "\0\0\1\0\1\0"s + std::string(12, '\0') + littleEndian(0, 4), false},
          Case{"webp of nothing", "RIFF\x04\0\0\0WEBP"s, false},
          Case{"heic of nothing", "\0\0\0\x18"s + "ftypheic\0\0\0\0mif1heic"s, false},
          Case{"jpeg 2000 of nothing", "\0\0\0\x0cjP  \r\n\x87\n"s, false}}) {
        EXPECT_EQ(decodes(content), expected) << what;
    }
}

TEST(HostilePicturesTest, MayHaveTheBudgetAndNoMore) {
    EXPECT_TRUE(decodes(blackPNG(10'000, 6'000, 6'000)));
    EXPECT_FALSE(decodes(blackPNG(10'001, 6'000, 6'000)));
}

}  // namespace quorvantis
