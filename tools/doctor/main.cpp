#include <algorithm>
#include <csignal>
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <stdlib.h>
#include <string>

#include "Checks.h"
#include "Clients.h"
#include "Options.h"
#include "Registrations.h"
#include "Report.h"
#include "integration/AgentManifest.h"
#include "json/JSONFiles.h"
#include "support/HelperIO.h"

namespace quorvantis::doctor {

namespace {

void printConfiguration(const std::string& name, const std::string& agent) {
    const auto client =
        std::find_if(clients().begin(), clients().end(), [&](const Client& c) { return c.name == name; });
    if (client == clients().end())
        throw std::runtime_error("There is no client \"" + name + "\". There are: " + clientNames());
    const auto agents = registeredAgents();
    if (std::find(agents.begin(), agents.end(), agent) == agents.end())
        throw std::runtime_error("The agent \"" + agent +
                                 "\" is not registered. There are: " + joined(agents));
    const std::string text = client->text(*client, HelperIO::readJSON<AgentManifest>(manifestPath(agent)));
    const std::string place =
        client->place.empty() ? "~/" + std::string(client->files[0]) : std::string(client->place);
    HelperIO::error("For " + place + ":");
    std::fputs(text.c_str(), stdout);
}

int run(const Options& options) {
    if (options.folder) {
        setenv("QUORVANTIS_TESTING", "1", 1);
        setenv("QUORVANTIS_APP_SUPPORT", options.folder->c_str(), 1);
    }
    if (options.wantsHelp) return std::fputs(helpText, stdout), 0;
    if (options.client) return printConfiguration(*options.client, options.agents.front()), 0;
    const auto results = examine(options.agents);
    (options.wantsJSON ? printJSON : printText)(results);
    return isHealthy(results) ? 0 : 1;
}

}  // namespace

}  // namespace quorvantis::doctor

int main(int count, char** arguments) {
    using namespace quorvantis;
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGCHLD, SIG_DFL);
    try {
        return doctor::run(doctor::parsedOptions(count, arguments));
    } catch (const std::exception& failure) {
        HelperIO::error("quorvantis-doctor: " + std::string(failure.what()));
        return 1;
    }
}
