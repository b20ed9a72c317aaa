#include <algorithm>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

#include "harness/FakeBroker.h"
#include "harness/Installation.h"

namespace quorvantis {

using harness::writeText;

/// An installation in which nothing is wrong until a case spoils it, in a folder that needs quotes.
struct Patient {
    harness::Installation installation{"/it's \"here\""};
    AgentManifest manifest = installation.manifest();
    std::string home = installation.folder / "home";
    std::string bin = installation.folder / "bin";
    std::string reply = R"({"running":true,"fullHistoryAccess":true,"historyEntryCount":7})";
    std::optional<harness::FakeBroker> broker;

    Patient() {
        setEnvironment("1", installation.appSupport);
        chmod(installation.credential.c_str(), 0600);
        broker.emplace(installation.socket(), [this](auto& connection) {
            const auto request = connection.receive();
            if (!request.empty()) connection.send(harness::replyTo(request, reply));
        });
        chmod(installation.socket().c_str(), 0600);
    }

    void setEnvironment(const std::string& testing, const std::string& folder) {
        installation.environment = {"QUORVANTIS_TESTING=" + testing, "QUORVANTIS_APP_SUPPORT=" + folder,
                                    "HOME=" + home};
    }
    void writeManifest(const std::string& agent = "codex") const {
        writeText(installation.agentFile(agent + ".json"), encodedRecord(manifest));
    }
    void useServer(const std::string& path) {
        manifest.mcpExecutablePath = path;
        writeManifest();
    }
    std::string script(const std::string& name, const std::string& text) const {
        writeText(bin + "/" + name, "#!/bin/sh\n" + text + "\n");
        chmod((bin + "/" + name).c_str(), 0700);
        return bin + "/" + name;
    }
    /// Uses a copy of the server, which has these decoders beside it: each runs the script.
    void useDecoders(const std::vector<std::string>& names, const std::string& text) {
        std::filesystem::create_directories(bin);
        std::filesystem::copy_file(QUORVANTIS_SERVER, bin + "/quorvantis-mcp");
        useServer(bin + "/quorvantis-mcp");
        for (const auto& name : names) script("quorvantis-image-decoder" + name, text);
    }
    /// Moves to a folder whose socket has a path of that size.
    void moveTo(std::size_t size) {
        const std::string parent = installation.folder / "";
        const std::string name(size - parent.size() - std::string("/Runtime/quorvantis.sock").size(), 'x');
        std::filesystem::rename(installation.appSupport, parent + name);
        setEnvironment("1", parent + name);
    }
    /// What the doctor prints. It exits with status 1 if that contains `failure`.
    std::string run(std::vector<std::string> arguments, const std::string& failure,
                    const std::string& errors = "") const {
        arguments.insert(arguments.begin(), QUORVANTIS_DOCTOR);
        harness::ChildProcess doctor({arguments, installation.environment});
        std::string output;
        while (const auto line = doctor.readLine()) output += *line + "\n";
        doctor.expectEnd(output.find(failure) == output.npos ? 0 : 1, errors);
        EXPECT_EQ(output.find("secret/token"), output.npos);
        EXPECT_EQ(output.find('\033'), output.npos) << "colours in a pipe";
        return output;
    }
    std::string configuration(const std::string& client, const std::string& place) const {
        return run({"--config", client, "codex"}, "fail", "For " + place + ":\n");
    }
    /// Writes a configuration of Codex in which another text stands for the old one.
    void configure(const std::string& old, const std::string& text) const {
        std::string toml = configuration("codex", "~/.codex/config.toml");
        for (std::size_t at = 0; (at = toml.find(old, at)) != toml.npos; at += text.size())
            toml.replace(at, old.size(), text);
        writeText(home + "/.codex/config.toml", toml);
    }

    struct Report {
        std::map<std::string, std::string> results;  // by the check's name
        std::string text;                            // what is not ok, and what to do
    };
    Report report(const std::string& agent) const {
        const auto json = JSONDocument::parseOwned(run({"--json", agent}, "\"ok\":false")).value();
        Report report;
        for (const JSON check : json["checks"].elements()) {
            report.results[std::string(*check["check"].string())] = *check["result"].string();
            if (check["result"].string() == "ok") continue;
            EXPECT_TRUE(check["result"].string() == "note" || check.find("advice"));
            report.text.append(*check["text"].string()).append("\n");
            report.text.append(check["advice"].string().value_or("")).append("\n");
        }
        EXPECT_EQ(json["ok"].boolean(), !hasFailed(report));
        return report;
    }
    static bool hasFailed(const Report& report) {
        return std::any_of(report.results.begin(), report.results.end(),
                           [](const auto& result) { return result.second == "fail"; });
    }
};

/// What differs from the other, as "check:result "; the result is empty for a check that was left out.
static std::string changes(const std::map<std::string, std::string>& healthy,
                           std::map<std::string, std::string> results) {
    std::string text;
    for (const auto& [check, result] : healthy)
        if (results[check] != result) text += check + ":" + results[check] + " ";
    return text;
}

static const std::string pixel = HelperIO::sha256(std::string_view("1x1:rgba8-srgb:\xFF\0\0\xFF", 19));

TEST(DoctorTest, NamesWhatIsWrong) {
    struct Case {
        std::string changes, text;
        std::function<void(Patient&)> spoil;
        std::string agent = "codex";
    };
    const std::string all =
        "client: credential: folder:fail manifest: pictures: server: session: socket: status: ";
    const std::vector<Case> cases = {
        // The folder and the manifest
        {"agent: " + all, "There is no folder /nowhere",
         [](Patient& p) { p.setEnvironment("1", "/nowhere"); }},
        {"agent: " + all, "QUORVANTIS_TESTING is not 1",
         [](Patient& p) { p.setEnvironment("true", p.installation.appSupport); }},
        {"agent: client: credential: manifest:fail pictures: server: session: socket: status: ",
         "Registered: codex\n", [](Patient&) {}, "cursor"},
        {"agent: client: credential: manifest:fail pictures: server: session: socket: status: ",
         "“installedAt”",
         [](Patient& p) { writeText(p.installation.agentFile("codex.json"), R"({"agent":"codex"})"); }},
        {"agent:fail client: credential: pictures: server: status: ", "another agent: cursor",
         [](Patient& p) { p.manifest.agent = "cursor", p.writeManifest(); }},
        {"agent:fail client: credential: pictures: server: status: ", "“codec” is no agent identifier.",
         [](Patient& p) { p.manifest.agent = "codec", p.writeManifest("codec"); }, "codec"},
        // The credential
        {"credential:fail pictures: server: status: ", "there is no such file",
         [](Patient& p) { std::filesystem::remove(p.installation.credential); }},
        {"credential:fail pictures: server: status: ", "Client credential is invalid.",
         [](Patient& p) { writeText(p.installation.credential, "secret/token\n"); }},
        {"credential:fail ", "Other users have access",
         [](Patient& p) { chmod(p.installation.credential.c_str(), 0640); }},
        // The server and the decoder
        {"pictures: server:fail ", "There is no /nowhere", [](Patient& p) { p.useServer("/nowhere"); }},
        {"pictures: server:fail ", "is not executable",
         [](Patient& p) { p.useServer(p.installation.credential); }},
        {"pictures:fail server:fail ", "says: out of order",
         [](Patient& p) { p.useServer(p.script("server", "echo out of order >&2")); }},
        {"pictures:fail ", "image-decoder", [](Patient& p) { p.useDecoders({}, ""); }},
        {"pictures:fail ", "does not decode",
         [](Patient& p) {
             p.useDecoders({"", "-tiff", "-heif"}, "echo 1 1 " + std::string(64, '0'));
         }},
        {"pictures:fail ", "TIFF",
         [](Patient& p) {
             p.useDecoders({"", "-heif"}, "echo 1 1 " + pixel);
         }},
        {"pictures:note ", "without a filter",
         [](Patient& p) {
             p.useDecoders({"", "-tiff", "-heif"}, "echo 1 1 " + pixel);
         }},
        // The application
        {"socket:fail status: ", "there is no /",
         [](Patient& p) { std::filesystem::remove(p.installation.socket()); }},
        {"socket:fail status: ", "nobody listens", [](Patient& p) { p.broker.reset(); }},
        {"socket:fail status: ", "has 104 bytes", [](Patient& p) { p.moveTo(104); }},
        {"socket:fail status: ", "is not a socket",
         [](Patient& p) {
             std::filesystem::remove(p.installation.socket());
             writeText(p.installation.socket(), "");
         }},
        {"socket:fail status: ", "mode 600",
         [](Patient& p) { chmod(p.installation.socket().c_str(), 0660); }},
        {"status:fail ", "Who are you?",
         [](Patient& p) { p.reply = R"({"ok":false,"error":"Who are you?"})"; }},
        {"status:note ", "refuses the history",
         [](Patient& p) { p.reply = R"({"fullHistoryAccess":false})"; }},
        // The client
        {"client:ok ", "", [](Patient& p) { p.configure("-", "-"); }},
        {"client:fail ", "not client-1", [](Patient& p) { p.configure("client-1", "client-2"); }},
        {"client:fail ", "another credential file", [](Patient& p) { p.configure("/credential", "/token"); }},
        {"client:fail ", "without QUORVANTIS_TESTING", [](Patient& p) { p.configure("_TESTING", ""); }},
        {"client:fail ", "without QUORVANTIS_APP_SUPPORT",
         [](Patient& p) { p.configure(" \\\"here\\\"", ""); }},
    };
    const auto healthy = Patient().report("codex").results;
    EXPECT_EQ(healthy.size(), 10u);
    for (const auto& [expected, text, spoil, agent] : cases) {
        Patient patient;
        spoil(patient);
        const auto report = patient.report(agent);
        EXPECT_EQ(changes(healthy, report.results), expected) << report.text;
        EXPECT_NE(report.text.find(text), std::string::npos) << text << " is not in\n" << report.text;
    }
}

TEST(DoctorTest, DistrustsASocketOfAnotherUser) {
    if (geteuid() != 0) GTEST_SKIP() << "only root can give a socket away";
    const Patient patient;
    ASSERT_EQ(chown(patient.installation.socket().c_str(), 1, 1), 0);
    EXPECT_NE(patient.report("codex").text.find("belongs to another user"), std::string::npos);
}

TEST(DoctorTest, ShowsWhoIsConnected) {
    Patient patient;
    patient.report("codex");
    EXPECT_FALSE(std::filesystem::exists(patient.installation.agentFile("codex-mcp-session.json")));
    harness::ChildProcess server(patient.installation.launch());
    server.send(R"({"id":1,"method":"initialize","params":{"clientInfo":{"name":"a\u001bclient"}}})"
                "\n");
    ASSERT_TRUE(server.readLine());
    patient.setEnvironment("0", "/nowhere");
    const std::string text = patient.run({"--folder", patient.installation.appSupport}, "fail");
    const std::string process = std::to_string(server.id());
    EXPECT_EQ(text.find("fail"), text.npos) << text;
    EXPECT_NE(text.find("\n\ncodex\n  ok    manifest"), text.npos) << text;
    EXPECT_NE(text.find("  ok    session     “a\uFFFDclient” is connected since "), text.npos) << text;
    EXPECT_NE(text.find(", process " + process + "\n"), text.npos) << text;
    EXPECT_NE(text.find("entries: 7\n"), text.npos) << text;
}

// ---- what to paste ---------------------------------------------------------------------------------------

static std::string texts(JSON array) {
    std::string lines;
    for (const JSON text : array.elements()) lines.append(text.string().value()).append("\n");
    return lines;
}

TEST(DoctorTest, PrintsWhatToPaste) {
    Patient patient;
    patient.useServer("/my server");
    const std::string folder = patient.installation.appSupport;
    const std::string arguments = "serve\n--agent\ncodex\n--client-id\nclient-1\n--credential-file\n" +
                                  patient.installation.credential + "\n";
    const struct {
        std::string client, place, section, variables, more;
    } cases[] = {{"cursor", "~/.cursor/mcp.json", "mcpServers", "env", ""},
                 {"vscode", "the file that the command “MCP: Open User Configuration” opens", "servers",
                  "env", "stdio"},
                 {"gemini", "~/.gemini/settings.json", "mcpServers", "env", ""},
                 {"opencode", "~/.config/opencode/opencode.json", "mcp", "environment", "local"},
                 {"copilot", "~/.copilot/mcp-config.json", "mcpServers", "env", "local"},
                 {"qwen", "~/.qwen/settings.json", "mcpServers", "env", ""},
                 {"cline", "~/.cline/data/settings/cline_mcp_settings.json", "mcpServers", "env", ""}};
    for (const auto& [client, place, section, variables, type] : cases) {
        const auto json = JSONDocument::parseOwned(patient.configuration(client, place)).value();
        const JSON entry = json[section]["quorvantis"];
        const JSON command = entry["command"];
        const bool isList = command.kind() == JSON::Kind::array;
        EXPECT_EQ(isList ? texts(command) : std::string(*command.string()) + "\n" + texts(entry["args"]),
                  "/my server\n" + arguments)
            << client;
        EXPECT_EQ(entry[variables]["QUORVANTIS_TESTING"].string(), "1") << client;
        EXPECT_EQ(entry[variables]["QUORVANTIS_APP_SUPPORT"].string(), folder) << client;
        EXPECT_EQ(entry["type"].string().value_or(""), type) << client;
        EXPECT_EQ(texts(entry["tools"]), client == "copilot" ? "*\n" : "");
    }
    EXPECT_EQ(
        patient.configuration("codex", "~/.codex/config.toml"),
        "[mcp_servers.quorvantis]\ncommand = \"/my server\"\nargs = [\"serve\", \"--agent\", \"codex\", "
        "\"--client-id\", \"client-1\", \"--credential-file\", \"" +
            patient.installation.credential +
            "\"]\nenv = {QUORVANTIS_TESTING = \"1\", QUORVANTIS_APP_SUPPORT = \"" +
            patient.installation.folder.path() + "/it's \\\"here\\\"\"}\n");

    harness::ChildProcess shell(
        {{"/bin/sh", "-c",
          "claude() { printf '%s\\n' \"$@\"; }; " + patient.configuration("claude-code", "a shell")}});
    std::string words;
    while (const auto line = shell.readLine()) words += *line + "\n";
    EXPECT_EQ(
        words,
        "mcp\nadd\n--scope\nuser\nquorvantis\n--env\nQUORVANTIS_TESTING=1\n--env\nQUORVANTIS_APP_SUPPORT=" +
            folder + "\n--\n/my server\n" + arguments);
}

TEST(DoctorTest, ListsWhatThereIs) {
    const Patient patient;
    const std::pair<std::vector<std::string>, std::string> cases[] = {
        {{"--config", "emacs", "codex"},
         "There is no client \"emacs\". There are: claude-code, codex, cursor, vscode, gemini, opencode, copilot, "
         "qwen, cline"},
        {{"--config", "codex", "cursor"}, "The agent \"cursor\" is not registered. There are: codex"},
        {{"--config", "codex"}, "Name one agent after --config codex. Try --help."},
        {{"--verbose"}, "Unknown option --verbose. Try --help."}};
    for (const auto& [arguments, message] : cases)
        EXPECT_EQ(patient.run(arguments, "", "quorvantis-doctor: " + message + "\n"), "");
}

}  // namespace quorvantis
