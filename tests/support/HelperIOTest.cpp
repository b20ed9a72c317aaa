#include "support/HelperIO.h"

#include <gtest/gtest.h>

#include "harness/TemporaryFolder.h"

namespace quorvantis {

TEST(HelperIOTest, HashesFilesAndQuotesWords) {
    const harness::TemporaryFolder folder;
    const std::string content(200'000, '\0');
    harness::writeText(folder / "zeros", content);
    EXPECT_EQ(HelperIO::sha256FileAt(folder / "zeros"), HelperIO::sha256(content));
    EXPECT_EQ(HelperIO::sha256("abc"), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    EXPECT_EQ(HelperIO::shellQuoted("a 'b' $c"), R"('a '\''b'\'' $c')");
}

}  // namespace quorvantis
