#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>
#include <list>
#include <optional>
#include <string>
#include <string_view>
#include <unistd.h>
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
using namespace std::literals;

static JSONText jsonText(std::string_view text) {
    JSONWriter writer(Slashes::bare);
    writer.value(text);
    return {writer.take()};
}

/// The real program, which serves what was added to its history and to the folder of images before.
class StandinTest : public testing::Test {
  protected:
    using Arguments = std::vector<std::string>;

    const harness::TemporaryFolder folder;
    const Path images = folder / "images", workspace = folder / "workspace", database = folder / "Database";

    static harness::ChildProcess::Launch launch(const std::string& at, Arguments arguments) {
        arguments.insert(arguments.begin(), {QUORVANTIS_STANDIN, "--folder", at});
        return {std::move(arguments), {"TZ=UTC", "HOME=" + at}};
    }
    /// Runs it to its end and returns what it prints.
    std::string run(const Arguments& arguments, std::string_view input = "",
                    const std::string& error = "") const {
        harness::ChildProcess child(launch(folder.path(), arguments));
        child.send(input);
        child.closeInput();
        std::string printed;
        while (const auto line = child.readLine()) printed += *line + "\n";
        child.expectEnd(error.empty() ? 0 : 1, error.empty() ? "" : "quorvantis-standin: " + error + "\n");
        return printed;
    }
    void serve(Arguments arguments = {}) {
        create_directories(images);
        arguments.insert(arguments.end(), {"--images", images.string()});
        child_.emplace(launch(folder.path(), arguments));
        for (auto line = child_->readLine(); line != "Serving. Stop with Ctrl-C."; line = child_->readLine())
            ASSERT_TRUE(line) << "it ends before it serves";
        const auto manifest = HelperIO::readJSON<AgentManifest>(folder / "Integrations/Agents/codex.json");
        broker_ = {{"codex", manifest.clientID, readFile(manifest.credentialPath)},
                   folder / "Runtime/quorvantis.sock"};
    }
    void stop() { child_.reset(); }
    JSONDocument call(std::string_view operation, const std::vector<BrokerField>& fields = {}) const {
        return broker_.call(operation, fields);
    }
    JSONDocument search(std::string_view query, int limit = 9) const {
        return call("search_history", {{"query", jsonText(query)}, {"limit", {std::to_string(limit)}}});
    }
    std::string previews(std::string_view query) const {
        std::string found;
        const auto reply = search(query);
        for (const JSON entry : reply["entries"].elements())
            found.append(*entry["preview"].string()).append("|");
        return found;
    }
    /// The same, once it is as expected; 10 seconds later at the latest.
    std::string previewsAtLast(std::string_view query, const std::string& expected) const {
        for (int looks = 0; looks < 200 && previews(query) != expected; ++looks) usleep(50'000);
        return previews(query);
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
    for (const char* text : {"Fähre heute", "Fähre morgen", "say \"hi\" 潮止まり", "STRASSE %_*"})
        run({"--add", text});
    run({"--add", "-"}, "nul \0 behind"sv);
    serve();
    for (const auto& [query, expected] : {std::pair("FÄHRE", "Fähre morgen|Fähre heute|"),
                                          {"heute fa\u0308hre", "Fähre heute|"},
                                          {"heute morgen", ""},
                                          {"ähr UT", "Fähre heute|"},
                                          {"潮", "say \"hi\" 潮止まり|"},
                                          {"止まり \"hi\"", "say \"hi\" 潮止まり|"},
                                          {"straße", "STRASSE %_*|"},
                                          {"%_*", "STRASSE %_*|"},
                                          {"%%", ""},
                                          {"or", "Fähre morgen|"},
                                          {"uvwxyz OR Fähre", ""},
                                          {"text 13", "say \"hi\" 潮止まり|"}})
        EXPECT_EQ(previews(query), expected) << query;
    EXPECT_EQ(search("behind")["entries"].elements().count(), 1u);
}

TEST_F(StandinTest, TakesTheSameCopyOnceInARow) {
    for (const char* text : {"one", "two", "two", "one"}) run({"--add", text});
    serve();
    EXPECT_EQ(previews("text"), "one|two|one|");
}

TEST_F(StandinTest, AddsWhatStandardInputHolds) {
    const std::string picture = readFile(QUORVANTIS_PICTURES "/turned/6.png"),
                      hash = HelperIO::sha256(picture);
    serve();
    const struct {
        std::string input, kind, preview, detail, paths;
    } cases[] = {
        {"text\n", "text", "text ", "Text, 5 characters", ""},
        {" https://x@example.org/a?b ", "url", "https://x@example.org/a?b", "Link to example.org", ""},
        {"https://example.org and more", "text", "https://example.org and more", "Text, 28 characters", ""},
        {"#\r\nfile:///a%20b\r\nfile://host/%C3%A4%FF", "file", "a b, ä\uFFFD", "2 files", "/a b|/ä\uFFFD|"},
        {"BMW is no bitmap", "text", "BMW is no bitmap", "Text, 16 characters", ""},
        {picture, "image", "copied-" + hash.substr(0, 8) + ".png", "Image, 11 x 18, 730 bytes",
         (database / "Pictures" / hash).string() + "|"}};
    for (const auto& [input, kind, preview, detail, paths] : cases) {
        run({"--add", "-", "--source", "org.example"}, input);
        const auto found = search("org.example", 1);
        const JSON entry = found["entries"].elements().front();
        std::string foundPaths;
        for (const JSON path : entry["filePaths"].elements()) foundPaths.append(*path.string()).append("|");
        EXPECT_EQ(entry["kind"].string(), kind);
        EXPECT_EQ(entry["preview"].string(), preview);
        EXPECT_EQ(entry["detail"].string(), detail);
        EXPECT_EQ(foundPaths, paths);
    }
    create_directories(workspace);
    EXPECT_EQ(readFile(workspace / materialize(HelperIO::sha256(picture))), picture);
    run({"--add", "-", "--kind", "code"}, "int i;");
    EXPECT_EQ(search("code int")["entries"].elements().count(), 1u);

    const std::string neither = "What to add is neither a picture that can be decoded nor text in UTF-8.";
    run({"--add", "a\xFF"}, "", neither);
    run({"--add", "-"}, "\x89PNG\r\n\x1A\n", neither);
    run({"--add", "-"}, "", "There is nothing to add.");
    EXPECT_EQ(call("status")["historyEntryCount"].integer(), 7);
}

TEST_F(StandinTest, LosesNoneOfManyAdditionsAtOnce) {
    std::list<harness::ChildProcess> additions;
    for (int i = 0; i < 20; ++i)
        additions.emplace_back(launch(folder.path(), {"--add", "addition " + std::to_string(i)}));
    for (auto& addition : additions) addition.expectEnd();
    serve();
    EXPECT_EQ(search("addition", 30)["entries"].elements().count(), 20u);
}

TEST_F(StandinTest, LosesNothingElseWhenKilled) {
    const std::string picture = readFile(QUORVANTIS_PICTURES "/turned/6.png");
    for (int i = 0; i < 15; ++i) {
        run({"--add", "kept " + std::to_string(i)});
        harness::ChildProcess addition(launch(folder.path(), {"--add", "-"}));
        addition.send(picture);
        addition.closeInput();
        usleep(static_cast<useconds_t>(i) * 8'000);
        kill(addition.id(), SIGKILL);
    }
    serve();
    EXPECT_EQ(search("kept", 99)["entries"].elements().count(), 15u);
    const auto pictures = search("copied", 99);
    for (const JSON entry : pictures["entries"].elements())
        EXPECT_EQ(readFile(std::string(*entry["filePaths"].elements().front().string())), picture);
}

TEST_F(StandinTest, ExportsWhatItImports) {
    const std::string record =
        R"({"entry":{"id":"9A1C3C1E-52C8-4C40-8A0F-3A3E0E6E7C11","createdAt":817000000.25,"primaryKind":"k","items":[)"
        R"({"id":"0E4C6B57-6B0B-4D5E-9D1E-2C1B8F1D7A22","index":7,"representations":[)"
        R"({"id":"5C0F3B52-2A9F-4E0B-8F5B-6B7D1E2A9C33","uti":"u","byteCount":5000000000,"sha256":"s","storagePath":"p",)"
        R"("inlineText":"i","isOriginalRepresentation":true,"imageMetadata":{"pixelWidth":1,"pixelHeight":2,)"
        R"("pixelHash":"h","bitsPerComponent":8,"hasAlpha":false,"colorModel":"RGB","profileName":"n","orientation":6,)"
        R"("frameCount":3,"originalUTI":"o","isOriginalFile":false,"isBitExact":true,"conversion":"c"},"thumbnailPath":"t"},)"
        R"({"id":"5C0F3B52-2A9F-4E0B-8F5B-6B7D1E2A9C34","uti":"v","byteCount":0,"isOriginalRepresentation":false}]},)"
        R"({"id":"0E4C6B57-6B0B-4D5E-9D1E-2C1B8F1D7A23","index":0,"representations":[]}]},"kind":"l","preview":"secret word",)"
        R"("detail":"d","sourceApplication":"a","text":"x\u0000y","filePaths":[]})";
    const auto with = [](std::string text, std::string_view old, std::string_view other) {
        return text.replace(text.rfind(old), old.size(), other);
    };
    const std::string older = with(with(record, "7C11", "7C12"), "817000000.25", "-5.5");
    const std::string file = folder / "history.json", whole = "[\n" + record + ",\n" + older + "\n]\n";
    harness::writeText(file, "[" + older + "," + record + "]");
    EXPECT_EQ(run({"--import", file}), "2 entries are new.\n");
    EXPECT_EQ(run({"--import", file}), "0 entries are new.\n");
    EXPECT_EQ(run({"--export"}), whole);

    const std::string wrong = "The data couldn’t be read because it isn’t in the correct format.";
    for (const auto& [text, where] : {std::pair("[\n" + record + ",\n{\"entry\":}\n]", "line 3: "),
                                      {with(whole, "-5.5", "\"\""), "[1].entry.createdAt: "},
                                      {"\xFF"s, ""}}) {
        harness::writeText(file, text);
        run({"--import", file}, "", file + ": " + where + wrong);
    }
    harness::writeText(file, "[" + record + "]");
    run({"--delete", "9a1c3c1e-52c8-4c40-8a0f-3a3e0e6e7c11"});
    EXPECT_EQ(run({"--export"}), "[\n" + older + "\n]\n");
    run({"--delete", "none"}, "",
        "There is no entry none in " + (database / "history.sqlite").string() + ".");
    run({"--add", "-"}, readFile(QUORVANTIS_PICTURES "/turned/6.png"));
    run({"--clear"});
    EXPECT_EQ(run({"--export"}), "[]\n");
    EXPECT_TRUE(is_empty(database / "Pictures"));
    for (const char* left : {"history.sqlite", "history.sqlite-wal"})
        EXPECT_EQ(exists(database / left) ? readFile(database / left).find("secret") : std::string::npos,
                  std::string::npos);
}

TEST_F(StandinTest, FillsAReplyWithWholeEntries) {
    std::string file;
    for (int i = 0; i < 7; ++i)  // as a reply has them, but the second, each has 262,144 bytes and more
        file.append(file.empty() ? "[" : ",")
            .append(R"({"entry":{"id":"9A1C3C1E-52C8-4C40-8A0F-3A3E0E6E7C1)" + std::to_string(i))
            .append(R"(","createdAt":)" + std::to_string(-i) +
                    R"(,"primaryKind":"","items":[]},"kind":"","detail":"",)")
            .append(R"("preview":")" + std::to_string(i) + R"(","text":")")
            .append(std::string(i == 1 ? 1'200'000 : 131'072, '/') + "\"}");
    harness::writeText(folder / "history.json", file + "]");
    run({"--import", folder / "history.json"});
    serve();
    EXPECT_EQ(previews("//"), "0|2|3|");
    EXPECT_EQ(search("///", 1)["entries"].elements().count(), 1u);
    EXPECT_THROW(call("get_history_item", {{"entryID", jsonText("9A1C3C1E-52C8-4C40-8A0F-3A3E0E6E7C11")}}),
                 HelperFailure);
}

TEST_F(StandinTest, KnowsPicturesInFolders) {
    const struct {
        std::string file, uti;
    } cases[] = {{"turned/6.png", "public.png"},
                 {"blocks/1.jpg", "public.jpeg"},
                 {"cut-out/plain.gif", "com.compuserve.gif"},
                 {"colours/lossless.webp", "org.webmproject.webp"},
                 {"colours/lzw.tif", "public.tiff"},
                 {"colours/24.bmp", "com.microsoft.bmp"},
                 {"colours/24.ico", "com.microsoft.ico"},
                 {"lossless-avif/lossless.avif", "public.avif"},
                 {"alpha-heic/alpha.heic", "public.heic"},
                 {"colours/lossless.jp2", "public.jpeg-2000"}};
    const auto bytes = [](const std::string& file) { return readFile(QUORVANTIS_PICTURES "/" + file); };
    for (const auto& [file, uti] : cases) harness::writeText(images / file, bytes(file));
    for (const char* text : {"notes", "", "GIF89a", "\xFF\xD8\xFF"})
        harness::writeText(images / ("no-picture-" + HelperIO::sha256(text)), text);
    harness::writeText(images / "again.png", bytes("turned/6.png"));
    serve();
    for (const auto& [file, uti] : cases) {
        const auto metadata = call("metadata", {{"assetID", jsonText(HelperIO::sha256(bytes(file)))}});
        const JSON image = metadata["images"].elements().front();
        EXPECT_EQ(image["uti"].string(), uti);
        const auto found = call("get_history_item", {{"entryID", jsonText(*image["entryID"].string())}});
        const auto path = found["entries"].elements().front()["filePaths"].elements().front().string();
        EXPECT_EQ(readFile(std::string(*path)), bytes(file));
    }
    EXPECT_EQ(call("status")["imageCount"].integer(), 10);
    EXPECT_EQ(previews("image"), previews("image x")) << "none without its size";

    harness::writeText(images / "later/\xFFlater.gif", bytes("cut-out/interlaced.gif"));
    EXPECT_EQ(previewsAtLast("later", "\uFFFDlater.gif|"), "\uFFFDlater.gif|");
    create_directories(workspace);
    EXPECT_EQ(materialize(HelperIO::sha256(bytes("cut-out/interlaced.gif"))),
              "quorvantis-images/\uFFFDlater.gif");
    harness::writeText(images / "later/\xFFlater.gif", "no more");
    EXPECT_EQ(previewsAtLast("later", ""), "");
    std::filesystem::remove(images / "turned/6.png");
    EXPECT_EQ(previewsAtLast("730", "again.png|"), "again.png|");

    stop();
    remove_all(images);
    serve();
    EXPECT_EQ(call("status")["historyEntryCount"].integer(), 0);
}

TEST_F(StandinTest, ChecksAllBeforeItChangesAnything) {
    const auto end = [&](const Arguments& arguments, const std::string& error) {
        harness::ChildProcess(launch(folder.path(), arguments))
            .expectEnd(1, "quorvantis-standin: " + error + "\n");
    };
    const std::string deep = folder / std::string(90, 'x');
    harness::ChildProcess(launch(deep, {}))
        .expectEnd(1, "quorvantis-standin: " + deep +
                          "/Runtime/quorvantis.sock is too long for a socket: 103 bytes at most.\n");
    end({"--images", folder / "none"},
        folder / "none" + ": The operation couldn’t be completed. (No such file or directory)");
    end({"--folder", ""}, "An option has an empty value. Try --help.");
    end({"--agent", "mine"}, "\"mine\" is no agent identifier. Try --help.");
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
    harness::writeText(database / "history.sqlite",
                       "no database, but long enough to have been taken for one?");
    end({}, (database / "history.sqlite").string() + ": file is not a database.");
    remove_all(database);
    end({"--images", folder.path(), "--prompt-image", "a.png"},
        "There is no picture \"a.png\" in the folders of pictures.");

    const std::string manifest = folder / "Integrations/Agents/codex.json";
    EXPECT_FALSE(std::filesystem::exists(manifest));
    serve();
    std::filesystem::remove(manifest);
    end({"--agent", "cursor", "--agent", "codex"},
        "Another application already serves " + folder / "Runtime/quorvantis.sock" + ".");
    EXPECT_EQ(harness::itemsIn(folder / "Integrations/Agents"), 0);
    stop();
    harness::writeText(manifest, R"({"agent":"codex"})");
    end({}, manifest + ": installedAt: The data couldn’t be read because it is missing.");
}

TEST_F(StandinTest, FailsOnDemand) {
    const std::string none = "Ombrel Link did not respond.";
    for (const auto& [fault, expected] :
         {std::pair("slow", "no failure"s),
          {"silent", none},
          {"hang-up", none},
          {"oversized", none},
          {"garbage", "The data couldn’t be read because it isn’t in the correct format."},
          {"wrong-id", "Quorvantis returned an invalid broker response."}}) {
        serve({"--fault", fault});
        std::string failure = "no failure";
        try {
            call("status");
        } catch (const std::exception& thrown) {
            failure = thrown.what();
        }
        EXPECT_EQ(failure, expected) << fault;
        stop();
    }
    serve({"--refuse-history=cursor"});
    EXPECT_EQ(call("status")["fullHistoryAccess"].boolean(), true);
    stop();
    serve({"--refuse-history=codex"});
    EXPECT_EQ(call("status")["fullHistoryAccess"].boolean(), false);
    EXPECT_THROW(search("any"), HelperFailure);
}

TEST_F(StandinTest, LeavesAloneWhatIsInTheWorkspace) {
    const std::string bytes = readFile(QUORVANTIS_PICTURES "/turned/6.png");
    const Path image = images / "a.png", copies = workspace / "quorvantis-images", copy = copies / "a.png",
               outside = folder / "outside";
    const std::string hash = HelperIO::sha256(bytes), otherName = hash.substr(0, 16) + "-a.png";
    harness::writeText(image, bytes);
    serve();
    const auto check = [&](const std::string& name, const auto& prepare) {
        remove_all(workspace);
        create_directories(copies);
        prepare();
        const std::string before = exists(copy) ? readFile(copy) : bytes;
        EXPECT_EQ(materialize(hash), "quorvantis-images/" + name);
        EXPECT_EQ(readFile(copies / name), bytes);
        EXPECT_EQ(exists(copy) ? readFile(copy) : before, before);
        EXPECT_FALSE(exists(outside));
    };
    check("a.png", [] {});
    check("a.png", [&] { harness::writeText(copy, bytes); });
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
