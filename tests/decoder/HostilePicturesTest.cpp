#include <filesystem>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include "imaging/AttachmentIdentity.h"
#include "support/HelperIO.h"

namespace quorvantis {

/// Expects of each file in the folder that it is decoded, or that it costs its pixel hash and nothing else.
static void expectPixels(const std::string& folder, bool expected) {
    for (const auto& file : std::filesystem::directory_iterator(QUORVANTIS_HOSTILE_PICTURES "/" + folder)) {
        const auto identity = HelperIO::attachmentIdentity(file.path());
        EXPECT_EQ(identity.sha256, HelperIO::sha256FileAt(file.path()));
        EXPECT_EQ(identity.pixelHash.has_value(), expected) << file.path();
    }
}

TEST(HostilePicturesTest, CostTheirPixelHashAtMost) {
    expectPixels("refused", false);
    rusage decoders;
    getrusage(RUSAGE_CHILDREN, &decoders);
    EXPECT_LT(decoders.ru_maxrss, 512 * 1024) << "kibibytes, with those of the sanitizers";
    expectPixels("whole", true);
}

}  // namespace quorvantis
