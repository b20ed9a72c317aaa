#include <filesystem>
#include <gtest/gtest.h>
#include <libheif/heif.h>
#include <map>
#include <sstream>

#include "harness/TemporaryFolder.h"
#include "imaging/AttachmentIdentity.h"
#include "support/Files.h"
#include "support/HelperIO.h"

namespace quorvantis {

static const std::filesystem::path pictures = QUORVANTIS_PICTURES;

static std::vector<std::string> filesIn(const std::filesystem::path& folder) {
    std::vector<std::string> files;
    for (const auto& file : std::filesystem::directory_iterator(folder)) files.push_back(file.path());
    return files;
}

/// By file, the hashes of newer-libraries.txt that hold for the libraries in use.
static std::map<std::string, std::string> hashesOfNewerLibraries() {
    std::istringstream rows(readFile(pictures / "newer-libraries.txt"));
    std::map<std::string, std::string> hashes;
    unsigned major, minor;
    char dot;
    for (std::string library, hash, file; rows >> library >> major >> dot >> minor >> hash >> file;) {
        EXPECT_EQ(library, "libheif");
        if (heif_get_version_number() >= (major << 24 | minor << 16)) hashes[pictures / file] = hash;
    }
    return hashes;
}

/// Returns the system call, in the words of strace, for which the sandbox killed the decoder of this picture;
/// empty unless it did.
static std::string forbiddenCall(const std::string& picture) {
    const std::string command = "strace -f " + HelperIO::shellQuoted(QUORVANTIS_DECODER) + " 3<" +
                                HelperIO::shellQuoted(picture) +
                                " 2>&1 >/dev/null | grep -B1 -m1 'killed by SIGSYS'";
    FILE* const output = popen(command.c_str(), "r");
    std::string call;
    for (int c; (c = std::fgetc(output)) != EOF;) call += static_cast<char>(c);
    pclose(output);
    return call;
}

TEST(PicturesTest, HaveTheHashOfTheirFolder) {
    const auto newer = hashesOfNewerLibraries();
    std::istringstream hashes(readFile(pictures / "hashes.txt"));
    std::size_t count = 0;
    for (std::string folder, hash; hashes >> folder >> hash;) {
        const auto files = filesIn(pictures / folder);
        const auto identities = HelperIO::attachmentIdentities(files);
        for (std::size_t i = 0; i < files.size(); ++i, ++count) {
            const auto other = newer.find(files[i]);
            EXPECT_EQ(identities[i]->pixelHash, other == newer.end() ? hash : other->second)
                << files[i] << "; forbidden: " << forbiddenCall(files[i]);
        }
    }
    EXPECT_GT(count, 150U);
}

TEST(PicturesTest, DeclareTheirStoredSize) {
    struct Case {
        std::string file;
        std::int64_t width, height;
    };
    for (const auto& [file, width, height] :
         {Case{"turned/1.png", 18, 11}, Case{"turned/4.png", 18, 11}, Case{"turned/5.png", 11, 18},
          Case{"turned/8.png", 11, 18}, Case{"turned/6.webp", 11, 18}, Case{"turned/6.tif", 11, 18},
          Case{"blocks/1.jpg", 24, 40}, Case{"blocks/6.jpg", 40, 24}, Case{"turned-avif/turned.avif", 45, 33},
          Case{"cut-out/placed.gif", 24, 20}, Case{"cut-out/4.ico", 24, 20},
          Case{"colours/24-top-down.bmp", 27, 19}}) {
        const auto identity = HelperIO::attachmentIdentity(pictures / file);
        EXPECT_EQ(identity.pixelWidth, width) << file;
        EXPECT_EQ(identity.pixelHeight, height) << file;
    }
}

/// A picture that lacks its last third has no pixels to hash, whatever its format.
TEST(PicturesTest, AreWholeOrNotDecoded) {
    const harness::TemporaryFolder folder;
    const std::string path = folder / "picture";
    for (const std::string file :
         {"colours/rgb.png",       "colours/rgb-interlaced.png", "blocks/gray.png",
          "jpeg-420/baseline.jpg", "jpeg-420/progressive.jpg",   "jpeg-420/arithmetic.jpg",
          "cut-out/plain.gif",     "cut-out/interlaced.gif",     "colours/lossless.webp",
          "webp-lossy/lossy.webp", "cut-out/animated.webp",      "colours/none.tif",
          "colours/lzw.tif",       "colours/tiles.tif",          "colours/24.bmp",
          "grays/runs-8.bmp",      "translucent/32.ico",         "cut-out/4.ico",
          "translucent/png.ico",   "lossy-heic/lossy.heic",      "lossy-avif/lossy.avif",
          "colours/lossless.jp2",  "colours/lossless.j2k"}) {
        const std::string content = readFile(pictures / file);
        replaceFile(path, content);
        EXPECT_TRUE(HelperIO::attachmentIdentity(path).pixelHash) << file;
        replaceFile(path, content.substr(0, content.size() * 2 / 3));
        EXPECT_FALSE(HelperIO::attachmentIdentity(path).pixelHash) << file;
    }
}

}  // namespace quorvantis
