#include "Clients.h"

#include <array>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Registrations.h"
#include "integration/AgentManifest.h"
#include "integration/HelperPaths.h"
#include "json/JSONWriter.h"
#include "support/HelperIO.h"

namespace quorvantis::doctor {

namespace {

std::vector<std::pair<std::string, std::string>> environment() {
    if (!isTestingMode()) return {};
    return {{"QUORVANTIS_TESTING", "1"}, {"QUORVANTIS_APP_SUPPORT", HelperPaths().appSupport}};
}

/// Whether the text has no character but these, letters and digits.
bool isPlain(std::string_view text, std::string_view others) {
    constexpr std::string_view plain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
    return !text.empty() && text.find_first_not_of(std::string(plain).append(others)) == text.npos;
}

// ---- a shell ---------------------------------------------------------------------------------------------

std::string word(const std::string& text) {
    return isPlain(text, "-_/.=:") ? text : HelperIO::shellQuoted(text);
}

std::string claudeCode(const Client&, const AgentManifest& manifest) {
    std::string command = "claude mcp add --scope user " + word(serverName(manifest));
    for (auto [name, value] : environment())
        command.append(" --env ").append(word(name.append("=").append(value)));
    command.append(" -- \\\n    ").append(word(serverPath(manifest)));
    for (const std::string& argument : serverArguments(manifest)) command.append(" ").append(word(argument));
    return command + "\n";
}

// ---- JSON, whose strings are strings of TOML too
// -------------------------------------------------------------

std::string quoted(std::string_view text) {
    return jsonText(text).text;
}

std::string list(std::vector<std::string> texts) {
    for (std::string& text : texts) text = quoted(text);
    return "[" + joined(texts) + "]";
}

std::string variables() {
    std::vector<std::string> members;
    for (const auto& [name, value] : environment()) members.push_back(quoted(name) + ": " + quoted(value));
    return "{" + joined(members) + "}";
}

std::string file(const Client& client, const AgentManifest& manifest, const std::string& members) {
    const std::string more = client.more.empty() ? "" : std::string(client.more) + ",\n      ";
    return "{\n  " + quoted(client.section) + ": {\n    " + quoted(serverName(manifest)) + ": {\n      " +
           more + members + "\n    }\n  }\n}\n";
}

std::string json(const Client& client, const AgentManifest& manifest) {
    return file(client, manifest,
                "\"command\": " + quoted(serverPath(manifest)) + ",\n      \"args\": " +
                    list(serverArguments(manifest)) + ",\n      \"env\": " + variables());
}

std::string openCode(const Client& client, const AgentManifest& manifest) {
    std::vector<std::string> command = serverArguments(manifest);
    command.insert(command.begin(), serverPath(manifest));
    return file(client, manifest,
                "\"command\": " + list(command) + ",\n      \"environment\": " + variables());
}

// ---- TOML ------------------------------------------------------------------------------------------------

std::string codex(const Client&, const AgentManifest& manifest) {
    const std::string name = serverName(manifest);
    std::vector<std::string> members;
    for (const auto& [key, value] : environment()) members.push_back(key + " = " + quoted(value));
    return "[mcp_servers." + (isPlain(name, "-_") ? name : quoted(name)) +
           "]\ncommand = " + quoted(serverPath(manifest)) + "\nargs = " + list(serverArguments(manifest)) +
           "\nenv = {" + joined(members) + "}\n";
}

constexpr std::array<Client, 9> table = {{
    {.name = "claude-code",
     .title = "Claude Code",
     .files = {".claude.json"},
     .place = "a shell",
     .text = claudeCode},
    {.name = "codex", .title = "Codex", .files = {".codex/config.toml"}, .text = codex},
    {.name = "cursor", .title = "Cursor", .files = {".cursor/mcp.json"}, .text = json},
    {.name = "vscode",
     .title = "VS Code",
     .files = {".config/Code/User/mcp.json", "Library/Application Support/Code/User/mcp.json"},
     .place = "the file that the command “MCP: Open User Configuration” opens",
     .text = json,
     .section = "servers",
     .more = R"("type": "stdio")"},
    {.name = "gemini", .title = "Gemini CLI", .files = {".gemini/settings.json"}, .text = json},
    {.name = "opencode",
     .title = "opencode",
     .files = {".config/opencode/opencode.json", ".config/opencode/opencode.jsonc"},
     .text = openCode,
     .section = "mcp",
     .more = R"("type": "local")"},
    {.name = "copilot",
     .title = "Copilot CLI",
     .files = {".copilot/mcp-config.json"},
     .text = json,
     .more = R"("type": "local", "tools": ["*"])"},
    {.name = "qwen", .title = "Qwen Code", .files = {".qwen/settings.json"}, .text = json},
    {.name = "cline",
     .title = "Cline",
     .files = {".cline/data/settings/cline_mcp_settings.json"},
     .text = json},
}};

}  // namespace

std::span<const Client> clients() {
    return table;
}

std::string clientNames() {
    std::vector<std::string> names;
    for (const Client& client : table) names.emplace_back(client.name);
    return joined(names);
}

}  // namespace quorvantis::doctor
