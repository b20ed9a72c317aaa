#include "Checks.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <exception>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Clients.h"
#include "Finding.h"
#include "Registrations.h"
#include "integration/AgentManifest.h"

namespace quorvantis::doctor {

namespace {

struct Check {
    std::string_view name;
    std::array<bool Examination::*, 2> needs;  // to make sense
    Finding (*examine)(Examination&);
};

constexpr std::array<Check, 8> checks = {{
    {"manifest", {}, examineManifest},
    {"agent", {&Examination::isRegistered}, examineAgent},
    {"credential", {&Examination::isKnown}, examineCredential},
    {"server", {&Examination::isProved}, examineServer},
    {"socket", {&Examination::isRegistered}, examineSocket},
    {"status", {&Examination::isProved, &Examination::canAsk}, examineStatus},
    {"pictures", {&Examination::canStart}, examinePictures},
    {"session", {&Examination::isRegistered}, examineSession},
}};

bool makesSense(const Check& check, const Examination& examination) {
    return std::all_of(check.needs.begin(), check.needs.end(),
                       [&](auto need) { return !need || examination.*need; });
}

Finding runCheck(const Check& check, Examination& examination) try {
    return check.examine(examination);
} catch (const std::exception& mistake) {
    return failure(std::string("This could not be checked: ") + mistake.what(), "Try again.");
}

void examineConfigurations(const AgentManifest& manifest, std::vector<Result>& results) {
    constexpr std::string_view check = "client";
    const std::size_t before = results.size();
    for (const Client& client : clients())
        if (auto finding = examineConfiguration(client, manifest))
            results.push_back({manifest.agent, check, std::move(*finding)});
    if (results.size() > before) return;
    results.push_back({manifest.agent, check,
                       note("No client that is known here starts the server for this agent.",
                            "See what to paste into one (" + clientNames() +
                                "): " + configCommand("CLIENT", manifest.agent))});
}

}  // namespace

std::vector<Result> examine(std::vector<std::string> agents) {
    if (agents.empty()) agents = registeredAgents();
    std::vector<Result> results = {{"", "folder", examineFolder(agents)}};
    if (results.front().finding.level == Level::fail) return results;
    for (const std::string& agent : agents) {
        Examination examination = {.agent = agent};
        for (const Check& check : checks)
            if (makesSense(check, examination))
                results.push_back({agent, check.name, runCheck(check, examination)});
        if (examination.isKnown) examineConfigurations(examination.manifest, results);
    }
    return results;
}

}  // namespace quorvantis::doctor
