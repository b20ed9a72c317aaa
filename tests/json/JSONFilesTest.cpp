#include "json/JSONFiles.h"

#include <gtest/gtest.h>

#include "harness/TemporaryFolder.h"

namespace quorvantis {

using Texts = std::vector<std::string>;

static unsigned modeOf(const std::string& path) {
    return static_cast<unsigned>(std::filesystem::symlink_status(path).permissions());
}

TEST(JSONFilesTest, ReplacesTheFileAndItsMode) {
    const harness::TemporaryFolder folder;
    const std::string path = folder / "a/b/record.json";
    HelperIO::writeJSON(Texts{"/"}, path, 0644);
    EXPECT_EQ(modeOf(path), 0644u);
    HelperIO::writeJSON(Texts{"/"}, path);
    EXPECT_EQ(modeOf(path), 0600u);
    std::filesystem::create_symlink(path, folder / "link");
    HelperIO::writeJSON(Texts{}, folder / "link");
    EXPECT_FALSE(std::filesystem::is_symlink(folder / "link"));
    EXPECT_EQ(readFile(path), R"(["\/"])");
    EXPECT_EQ(harness::itemsIn(folder / "a/b"), 1);
}

TEST(JSONFilesTest, RemovesWhatKilledWritersLeft) {
    const harness::TemporaryFolder folder;
    const std::vector<std::string> names = {".record.json.q1Z9aB", ".record.json.young0",
                                            ".other.json.q1Z9aB", ".record.json.q1Z9aBC",
                                            "record.json.q1Z9aB"};
    for (const auto& name : names) {
        harness::writeText(folder / name, "");
        const auto age = std::chrono::seconds(name.ends_with("young0") ? 30 : 90);
        std::filesystem::last_write_time(folder / name, std::filesystem::file_time_type::clock::now() - age);
    }
    HelperIO::writeJSON(Texts{}, folder / "record.json");
    for (const auto& name : names)
        EXPECT_EQ(std::filesystem::exists(folder / name), name != names.front()) << name;
}

TEST(JSONFilesTest, LeavesNothingBehindWhenItFails) {
    const harness::TemporaryFolder folder;
    harness::writeText(folder / "taken/file", "old");
    EXPECT_THROW(HelperIO::writeJSON(Texts{}, folder / "taken"), FileError);
    EXPECT_THROW(HelperIO::writeJSON(Texts{}, folder / "taken/file/below"), FileError);
    EXPECT_THROW(HelperIO::writeJSON(Date{1.0 / 0.0}, folder / "taken/file"), EncodingError);
    EXPECT_EQ(readFile(folder / "taken/file"), "old");
    EXPECT_EQ(harness::itemsIn(folder.path()) + harness::itemsIn(folder / "taken"), 2);
}

}  // namespace quorvantis
