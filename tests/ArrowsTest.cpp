#include <filesystem>
#include <gtest/gtest.h>
#include <string>

#include "support/Files.h"

namespace quorvantis {

/// A folder may include itself and those after it; the decoder's folders, those from imaging on besides.
static bool mayInclude(const std::string& from, const std::string& to) {
    const std::string order =
        from.starts_with("decoder/")
            ? "decoder/process decoder/formats decoder/picture imaging json support platform "
            : "cli mcp state broker integration imaging json support platform ";
    const auto place = order.find(from + " ");
    return place != order.npos && order.find(to + " ", place) != order.npos;
}

/// The folder of a path below src; sources for one system belong to the folder above theirs.
static std::string folderOf(const std::filesystem::path& path) {
    const auto folder = path.parent_path();
    const bool isForOneSystem = folder.filename() == "linux" || folder.filename() == "macos";
    return isForOneSystem ? folder.parent_path() : folder;
}

TEST(ArrowsTest, PointToTheRight) {
    EXPECT_FALSE(mayInclude("support", "json") || mayInclude("decoder/formats", "integration"));
    int seen = 0;
    for (const auto& file : std::filesystem::recursive_directory_iterator(QUORVANTIS_SOURCE)) {
        if (!file.is_regular_file()) continue;
        const auto name = file.path().lexically_relative(QUORVANTIS_SOURCE);
        const std::string text = readFile(file.path()), mark = "#include \"";
        for (std::size_t at = 0; (at = text.find(mark, at)) != text.npos; ++seen) {
            at += mark.size();
            const std::filesystem::path header = text.substr(at, text.find('"', at) - at);
            // Headers that are installed name each other by relative paths.
            const bool isRelative = *header.begin() == ".." || !header.has_parent_path();
            const auto target = isRelative ? (name.parent_path() / header).lexically_normal() : header;
            EXPECT_TRUE(mayInclude(folderOf(name), folderOf(target))) << name << " includes " << header;
        }
    }
    EXPECT_GT(seen, 300);
}

}  // namespace quorvantis
