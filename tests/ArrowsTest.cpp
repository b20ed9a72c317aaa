#include <filesystem>
#include <gtest/gtest.h>

#include "support/Files.h"

namespace quorvantis {

/// A folder may include itself and those after it.
static bool mayInclude(const std::string& from, const std::string& header) {
    const std::string order = "cli/mcp/state/broker/integration/imaging/json/support/platform/";
    const std::string folder = header.substr(0, header.find('/') + 1);
    if (header == "support/HelperFailure.h") return from != "platform";
    if (from == "decoder") return folder == "decoder/" || mayInclude("imaging", header);
    const auto place = order.find(from + "/");
    return place != order.npos && !folder.empty() && order.find(folder, place) != order.npos;
}

TEST(ArrowsTest, PointToTheRight) {
    int seen = 0;
    for (const auto& file : std::filesystem::recursive_directory_iterator(QUORVANTIS_SOURCE)) {
        if (!file.is_regular_file()) continue;
        const auto name = file.path().lexically_relative(QUORVANTIS_SOURCE);
        const std::string text = readFile(file.path()), mark = "#include \"";
        for (std::size_t at = 0; (at = text.find(mark, at)) != text.npos; ++seen) {
            at += mark.size();
            const std::string header = text.substr(at, text.find('"', at) - at);
            EXPECT_TRUE(mayInclude(*name.begin(), header)) << name << " includes " << header;
            EXPECT_NE(name, "support/HelperFailure.h");
        }
    }
    EXPECT_GT(seen, 50);
}

TEST(ArrowsTest, AreSeenWhenTheyPointWrong) {
    EXPECT_TRUE(mayInclude("broker", "broker/BrokerTransport.h"));
    EXPECT_FALSE(mayInclude("platform", "support/HelperFailure.h"));
    EXPECT_FALSE(mayInclude("broker", "state/MCPClientSession.h"));
    EXPECT_FALSE(mayInclude("decoder", "integration/HelperPaths.h"));
    EXPECT_FALSE(mayInclude("mcp", "Session.h"));
}

}  // namespace quorvantis
