#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Checks.h"
#include "Clients.h"
#include "Finding.h"
#include "Registrations.h"
#include "integration/AgentManifest.h"
#include "integration/HelperPaths.h"
#include "json/JSONWriter.h"
#include "platform/Process.h"
#include "support/Files.h"
#include "support/Paths.h"

namespace quorvantis::doctor {

namespace {

/// The words after an option, of each time that it occurs.
std::vector<std::string> valuesAfter(std::string_view option, std::string_view text) {
    constexpr std::string_view separators = " \t\r\n\"',[]{}";
    std::vector<std::string> values;
    for (std::size_t place = 0; (place = text.find(option, place)) != text.npos;) {
        place = std::min(text.find_first_not_of(separators, place + option.size()), text.size());
        const std::size_t end = std::min(text.find_first_of(separators, place), text.size());
        values.emplace_back(text.substr(place, end - place));
    }
    return values;
}

/// Whether the text has a quoted value that ends so. JSON and TOML quote alike what occurs in paths.
bool hasValue(std::string_view text, const std::string& value) {
    return text.find(jsonText(value).text.substr(1)) != text.npos || text.find(value + "'") != text.npos;
}

bool startsServerFor(const std::string& agent, std::string_view text) {
    const auto agents = valuesAfter("--agent", text);
    return std::find(agents.begin(), agents.end(), agent) != agents.end();
}

/// What the configuration has otherwise than the manifest; empty if nothing.
std::string difference(std::string_view text, const AgentManifest& manifest) {
    const auto clientIDs = valuesAfter("--client-id", text);
    if (std::find(clientIDs.begin(), clientIDs.end(), manifest.clientID) == clientIDs.end())
        return "with a client identifier that is not " + manifest.clientID;
    if (!hasValue(text, manifest.credentialPath))
        return "with another credential file than " + manifest.credentialPath;
    if (!isTestingMode()) return "";
    if (text.find("QUORVANTIS_TESTING") == text.npos) return "without QUORVANTIS_TESTING=1";
    if (!hasValue(text, HelperPaths().appSupport))
        return "without QUORVANTIS_APP_SUPPORT=" + HelperPaths().appSupport;
    return "";
}

Finding compared(const Client& client, const std::string& path, std::string_view text,
                 const AgentManifest& manifest) {
    const std::string title(client.title), other = difference(text, manifest);
    if (other.empty()) return fine(title + " starts the server for this agent, in " + path);
    return failure(title + " starts the server for this agent " + other + ", in " + path,
                   "Replace the entry by what this prints, and restart " + title + ": " +
                       configCommand(client.name, manifest.agent));
}

}  // namespace

std::optional<Finding> examineConfiguration(const Client& client, const AgentManifest& manifest) {
    for (const std::string_view file : client.files) {
        const std::string path = joinedPath(platform::homeFolder(), file);
        std::string text;
        try {
            if (!file.empty()) text = readFile(path);
        } catch (const FileError&) {}  // the client is not there, or has no configuration
        if (startsServerFor(manifest.agent, text)) return compared(client, path, text, manifest);
    }
    return std::nullopt;
}

}  // namespace quorvantis::doctor
