#include <filesystem>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "broker/BrokerClient.h"
#include "broker/BrokerTransport.h"
#include "harness/ChildProcess.h"
#include "harness/TemporaryFolder.h"
#include "integration/AgentManifest.h"
#include "json/JSONFiles.h"
#include "platform/Descriptors.h"
#include "support/HelperFailure.h"
#include "support/HelperIO.h"

namespace quorvantis {

using Path = std::filesystem::path;
using namespace std::string_literals;

static JSONText jsonText(std::string_view text) {
    JSONWriter writer(Slashes::bare);
    writer.value(text);
    return {writer.take()};
}

/// The real program, which serves what was added to its history and to the folder of images before.
class StandinTest : public testing::Test {
  protected:
    const harness::TemporaryFolder folder;
    const Path images = folder / "images", workspace = folder / "workspace";

    void addToHistory(const std::string& text) const {
        harness::ChildProcess({{QUORVANTIS_STANDIN, "--folder", folder.path(), "--add", text}}).expectEnd();
    }
    void serve() {
        create_directories(images);
        child_.emplace(harness::ChildProcess::Launch{
            {QUORVANTIS_STANDIN, "--folder", folder.path(), "--images", images.string()}});
        for (auto line = child_->readLine(); line != "Serving. Stop with Ctrl-C."; line = child_->readLine())
            ASSERT_TRUE(line) << "it ends before it serves";
        const auto manifest = HelperIO::readJSON<AgentManifest>(folder / "Integrations/Agents/codex.json");
        broker_ = {{"codex", manifest.clientID, readFile(manifest.credentialPath)},
                   folder / "Runtime/quorvantis.sock"};
    }
    JSONDocument call(std::string_view operation, const std::vector<BrokerField>& fields = {}) const {
        return broker_.call(operation, fields);
    }
    std::string previews(std::string_view query) const {
        std::string found;
        const auto reply = call("search_history", {{"query", jsonText(query)}, {"limit", {"9"}}});
        for (const JSON entry : reply["entries"].elements())
            found.append(*entry["preview"].string()).append("|");
        return found;
    }
    /// The relative path of the image's copy in the workspace; empty when there is none.
    std::string materialize(std::string_view assetID) const try {
        const auto reply = call(
            "materialize", {{"assetID", jsonText(assetID)}, {"workspaceRoot", jsonText(workspace.string())}});
        return std::string(reply["images"].elements().front()["relativePath"].string().value());
    } catch (const HelperFailure&) {
        return "";
    }

  private:
    std::optional<harness::ChildProcess> child_;
    BrokerClient broker_;
};

TEST_F(StandinTest, RefusesOtherCallers) {
    serve();
    const auto address = BrokerTransport::address(folder / "Runtime/quorvantis.sock");
    std::vector<platform::Descriptor> silent(60);
    for (auto& client : silent) {
        client = platform::openLocalSocket();
        ASSERT_EQ(connect(client.get(), address->get(), address->length), 0);
    }
    EXPECT_EQ(call("status")["running"].boolean(), true) << "and is not kept waiting by silent ones";
    for (const char* key : {"agent", "clientID", "credential"})
        for (const char* value : {"\"cursor\"", "\"\"", "null"})
            EXPECT_THROW(call("status", {{key, {value}}}), HelperFailure) << key << " " << value;
}

TEST_F(StandinTest, FindsEntriesThatHaveEveryWord) {
    for (const char* text : {"Fähre heute", "Fähre morgen"}) addToHistory(text);
    serve();
    for (const auto& [query, expected] : {std::pair("FÄHRE", "Fähre morgen|Fähre heute|"),
                                          {"heute fa\u0308hre", "Fähre heute|"},
                                          {"heute morgen", ""}})
        EXPECT_EQ(previews(query), expected) << query;
}

TEST_F(StandinTest, DescribesImages) {
    const std::string png = readFile(QUORVANTIS_PICTURES "/turned/6.png");
    const struct {
        std::string file, uti, detail;
    } cases[] = {{png, "public.png", "Image, 11 x 18, " + std::to_string(png.size()) + " bytes"},
                 {"\xFF\xD8\xFF", "public.jpeg", "Image, 3 bytes"},
                 {"GIF89a", "com.compuserve.gif", "Image, 6 bytes"},
                 {"RIFF    WEBP", "org.webmproject.webp", "Image, 12 bytes"},
                 {"MM\0*"s, "public.tiff", "Image, 4 bytes"},
                 {"BM", "com.microsoft.bmp", "Image, 2 bytes"},
                 {"\0\0\1\0"s, "com.microsoft.ico", "Image, 4 bytes"},
                 {"    ftypavif", "public.avif", "Image, 12 bytes"},
                 {"    ftypheic", "public.heic", "Image, 12 bytes"},
                 {"    ftypmif1", "public.heif", "Image, 12 bytes"},
                 {"\xFF\x4F\xFF\x51", "public.jpeg-2000", "Image, 4 bytes"},
                 {"notes", "public.data", "Image, 5 bytes"}};
    for (const auto& [file, uti, detail] : cases) harness::writeText(images / uti, file);
    serve();
    for (const auto& [file, uti, detail] : cases) {
        const auto metadata = call("metadata", {{"assetID", jsonText(HelperIO::sha256(file))}});
        const JSON image = metadata["images"].elements().front();
        EXPECT_EQ(image["uti"].string(), uti);
        const auto found = call("get_history_item", {{"entryID", jsonText(*image["entryID"].string())}});
        const JSON entry = found["entries"].elements().front();
        EXPECT_EQ(entry["detail"].string(), detail) << uti;
        EXPECT_EQ(entry["preview"].string(), uti);
    }
}

TEST_F(StandinTest, LeavesAloneWhatIsInTheWorkspace) {
    const Path image = images / "a.png", copies = workspace / "quorvantis-images", copy = copies / "a.png",
               outside = folder / "outside";
    const std::string hash = HelperIO::sha256("the image"), otherName = hash.substr(0, 16) + "-a.png";
    harness::writeText(image, "the image");
    serve();
    const auto check = [&](const std::string& name, const auto& prepare) {
        remove_all(workspace);
        create_directories(copies);
        prepare();
        const std::string before = exists(copy) ? readFile(copy) : "the image";
        EXPECT_EQ(materialize(hash), "quorvantis-images/" + name);
        EXPECT_EQ(readFile(copies / name), "the image");
        EXPECT_EQ(exists(copy) ? readFile(copy) : before, before);
        EXPECT_FALSE(exists(outside));
    };
    check("a.png", [] {});
    check("a.png", [&] { harness::writeText(copy, "the image"); });
    check(otherName, [&] { harness::writeText(copy, "another image"); });
    check(otherName, [&] { create_symlink(image, copy); });
    check(otherName, [&] { create_symlink(outside, copy); });

    remove_all(copies);
    create_directories(outside);
    create_directory_symlink(outside, copies);
    EXPECT_EQ(materialize(hash), "");
    EXPECT_TRUE(is_empty(outside));
}

}  // namespace quorvantis
