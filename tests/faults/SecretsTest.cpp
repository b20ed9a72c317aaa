#include <csignal>
#include <gtest/gtest.h>
#include <map>
#include <sstream>
#include <sys/stat.h>

#include "harness/Installation.h"
#include "platform/Process.h"
#include "support/Files.h"

namespace quorvantis {

using harness::ChildProcess;
using Sightings = std::map<std::string, std::string>;  // by where it was seen

static std::string about(pid_t process, const std::string& what) {
    return readFile("/proc/" + std::to_string(process) + "/" + what);
}

static bool leavesNoCore(pid_t process) {
    const std::string none = "Max core file size        0                    0 ";
    return about(process, "limits").find(none) != std::string::npos;
}

static void lookAt(const std::string& name, pid_t process, Sightings& seen) {
    for (const auto what : {"cmdline", "environ"}) seen[name + ", " + what] = about(process, what);
    EXPECT_TRUE(leavesNoCore(process)) << name;
}

/// A decoder at work for the process.
static pid_t decoderOf(pid_t process) {
    for (int looks = 0; looks < 20'000; ++looks, usleep(500)) {
        pid_t child = 0;
        std::istringstream(about(process, "task/" + std::to_string(process) + "/children")) >> child;
        const bool isDecoder = platform::executablePath(child).value_or("").ends_with("-image-decoder");
        if (isDecoder && leavesNoCore(child)) return child;
    }
    throw std::runtime_error("no decoder was seen");
}

static void readLines(const std::string& name, ChildProcess& process, Sightings& seen, int count = 1000) {
    for (std::optional<std::string> line; count > 0 && (line = process.readLine()); --count)
        seen[name + ", output"] += *line + "\n";
}

TEST(SecretsTest, StayInTheirFile) {
    const harness::TemporaryFolder workspace;
    const harness::Installation installation;
    const std::string folder = installation.appSupport, picture = workspace / "images/picture";
    harness::writeText(picture, readFile(QUORVANTIS_HOSTILE_PICTURES "/whole/png-of-the-whole-budget"));
    for (const auto& file : {installation.agentFile("codex.json"), installation.credential})
        chmod(file.c_str(), 0600);  // as the application leaves them
    Sightings seen;

    ChildProcess standin(
        {{QUORVANTIS_STANDIN, "--refuse-history", "--folder", folder, "--images", workspace / "images"}});
    lookAt("stand-in's decoder", decoderOf(standin.id()), seen);
    while (seen["stand-in, output"].find("Serving") == std::string::npos)
        readLines("stand-in", standin, seen, 1);

    ChildProcess server(installation.launch());
    const auto call = [&](const std::string& tool, const std::string& arguments) {
        server.send(R"({"id":1,"method":"tools/call","params":{"name":")" + tool + R"(","arguments":{)" +
                    arguments + "}}}\n");
    };
    server.send("{\"id\":1,\"method\":\"initialize\"}\n{\"id\":1,\"method\":\"tools/list\"}\nno JSON\n");
    call("credential", "");
    call("get_clipboard_item", "");
    call("get_asset_metadata", R"("asset_id":"none")");
    call("search_clipboard_history", R"("query":"picture")");
    call("get_integration_status", "");
    call("resolve_current_prompt_images", R"("workspace_root":")" + workspace.path() +
                                              R"(","attachments":[{"file_path":")" + picture + R"("}])");
    lookAt("decoder", decoderOf(server.id()), seen);
    lookAt("server", server.id(), seen);
    readLines("server", server, seen, 8);
    EXPECT_NE(seen["server, output"].find("\"matched\":true,\"confidence\""), std::string::npos);
    for (const auto& file : std::filesystem::recursive_directory_iterator(folder)) {
        if (file.is_directory()) continue;
        EXPECT_EQ(static_cast<unsigned>(file.status().permissions()) & 077, 0u) << file;
        if (file.is_regular_file() && file.path() != installation.credential)
            seen[file.path()] = readFile(file.path());
    }
    kill(standin.id(), SIGTERM);
    readLines("stand-in", standin, seen);
    standin.expectEnd();
    call("get_integration_status", "");
    readLines("server", server, seen, 1);
    server.expectEnd();
    harness::writeText(installation.credential, "secret/token\n");
    ChildProcess(installation.launch())
        .expectEnd(1, "Invalid pairing request: Client credential is invalid.\n");

    EXPECT_EQ(seen.size(), 13u);
    for (const auto& [where, text] : seen)
        for (const auto form : {"secret", "c2VjcmV0", "736563726574"})  // in Base64 and hexadecimal digits
            EXPECT_EQ(text.find(form), text.npos) << where << ": " << text;
}

}  // namespace quorvantis
