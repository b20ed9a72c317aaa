#include <gtest/gtest.h>

#include "harness/TemporaryFolder.h"
#include "json/JSONDocument.h"
#include "mcp/Handlers.h"
#include "support/HelperIO.h"

namespace quorvantis {

using QuorvantisMCP::attachmentIdentities;

static std::optional<std::string> identities(const std::string& attachments) {
    const auto document = JSONDocument::parse(attachments).value();
    const auto text = attachmentIdentities(document.root().elements());
    return text ? std::optional(text->text) : std::nullopt;
}

TEST(AttachmentIdentitiesTest, AreOfTheFilesInTheirOrder) {
    const harness::TemporaryFolder folder;
    harness::writeText(folder / "text", "no picture");
    harness::writeText(folder / "empty", "");
    const std::string hash(64, 'a'), text = HelperIO::sha256("no picture"), empty = HelperIO::sha256("");
    const auto file = [&](const char* name) {
        return R"({"file_path":")" + (folder / name) + R"(","sha256":1})";
    };
    EXPECT_EQ(identities("[" + file("text") + R"(,{"asset_id":")" + hash + "\"}," + file("empty") + "]"),
              R"([{"sha256":")" + text + R"("},{"assetID":")" + hash + R"("},{"sha256":")" + empty + "\"}]");
    for (const std::string unusable : {"[]", "{}", "[7]", "[{}]"})
        EXPECT_FALSE(identities(unusable)) << unusable;
    for (const auto name : {"none", "", "../", "text\\u0000x"})
        EXPECT_FALSE(identities("[" + file("text") + "," + file(name) + "]")) << name;
}

}  // namespace quorvantis
