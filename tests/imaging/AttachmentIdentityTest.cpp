#include "imaging/AttachmentIdentity.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "harness/TemporaryFolder.h"
#include "support/Files.h"
#include "support/HelperIO.h"

namespace quorvantis {

using harness::writeText;

static const std::string picture = QUORVANTIS_PICTURES "/grays/8.png";

TEST(AttachmentIdentityTest, HoldsAllOfAPicture) {
    const auto identity = HelperIO::attachmentIdentity(picture);
    EXPECT_EQ(identity.sha256, HelperIO::sha256FileAt(picture));
    EXPECT_EQ(encodedRecord(identity), "{\"sha256\":\"" + identity.sha256 + "\",\"pixelHash\":\"" +
                                           *identity.pixelHash + "\",\"pixelWidth\":22,\"pixelHeight\":16}");
}

TEST(AttachmentIdentityTest, HoldsTheFileHashAloneOfAnythingElse) {
    const harness::TemporaryFolder folder;
    for (const std::string& content :
         {std::string(), std::string("plain text"), std::string("\x89PNG\r\n\x1a\n"), std::string("GIF89a"),
          std::string("BM"), std::string("%PDF-1.4\n"), std::string(1, '\0'), std::string(1'000'000, 'x')}) {
        writeText(folder / "picture.png", content);
        EXPECT_EQ(encodedRecord(HelperIO::attachmentIdentity(folder / "picture.png")),
                  "{\"sha256\":\"" + HelperIO::sha256(content) + "\"}");
    }
}

TEST(AttachmentIdentityTest, IsThereForRegularFilesOnly) {
    const harness::TemporaryFolder folder;
    mkfifo((folder / "fifo").c_str(), 0600);
    writeText(folder / "file", "text");
    const std::vector<std::string> paths = {
        folder / "missing",  folder / "fifo", folder / "file", folder.path(), "/dev/null", picture, "",
        "/proc/self/pagemap"};  // it calls itself regular and does not end
    const auto identities = HelperIO::attachmentIdentities(paths);
    for (std::size_t i = 0; i < paths.size(); ++i) {
        const bool readable = i == 2 || i == 5;
        EXPECT_EQ(identities[i].has_value(), readable) << paths[i];
        if (!readable) {
            EXPECT_THROW(HelperIO::attachmentIdentity(paths[i]), FileError) << paths[i];
        }
    }
    EXPECT_EQ(identities[2]->sha256, HelperIO::sha256("text"));
    EXPECT_TRUE(identities[5]->pixelHash);
}

}  // namespace quorvantis
