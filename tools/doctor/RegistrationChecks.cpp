#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <vector>

#include "Checks.h"
#include "Finding.h"
#include "Registrations.h"
#include "integration/AgentIdentifier.h"
#include "integration/AgentManifest.h"
#include "integration/CredentialValidator.h"
#include "integration/HelperPaths.h"
#include "json/CodingErrors.h"
#include "json/JSONFiles.h"
#include "platform/Process.h"
#include "support/Files.h"
#include "support/HelperFailure.h"
#include "support/HelperIO.h"
#include "support/Paths.h"

namespace quorvantis::doctor {

Finding examineFolder(const std::vector<std::string>& agents) {
    const bool isNamed = platform::environmentVariable("QUORVANTIS_APP_SUPPORT").has_value();
    std::string text = HelperPaths().appSupport, advice;
    if (isTestingMode()) {
        text += ", as for a stand-in: QUORVANTIS_TESTING is 1";
        advice = "Check its name. " + startAdvice("codex");
    } else {
        if (isNamed) text += ": QUORVANTIS_APP_SUPPORT does not count, for QUORVANTIS_TESTING is not 1";
        advice =
            startAdvice("codex") + " To look at the folder of a stand-in: quorvantis-doctor --folder DIR";
    }
    std::error_code error;
    if (!std::filesystem::is_directory(HelperPaths().appSupport, error))
        return failure("There is no folder " + text, advice);
    if (agents.empty()) return failure("No agent is registered in " + text, advice);
    return isTestingMode() || isNamed ? note(text) : fine(text);
}

Finding examineManifest(Examination& examination) {
    const std::string& agent = examination.agent;
    const std::string path = manifestPath(agent);
    std::error_code error;
    if (!std::filesystem::exists(path, error))
        return failure(agent + " is not registered. Registered: " + joined(registeredAgents()),
                       isTestingMode() ? startAdvice(agent) : "Connect the agent in Quorvantis.");
    try {
        examination.manifest = HelperIO::readJSON<AgentManifest>(path);
        examination.isRegistered = true;
        return fine(path + ", client identifier " + examination.manifest.clientID);
    } catch (const DecodingError& mistake) {
        const std::string key = mistake.path().empty() ? "" : ", “" + mistake.path() + "”";
        return failure(path + key + ": " + mistake.what(), connectAdvice(agent));
    } catch (const FileError& mistake) {
        return failure(path + ": " + mistake.what(), connectAdvice(agent));
    }
}

Finding examineAgent(Examination& examination) {
    const std::string& agent = examination.agent;
    const bool isTest = isTestingMode() && agent == "test";
    if (!AgentIdentifier::isValid(agent) && !isTest)
        return failure("“" + agent + "” is no agent identifier.",
                       "Register it as codex, claude-code, cursor, or custom- and a UUID.");
    if (examination.manifest.agent != agent)
        return failure("The manifest is for another agent: " + examination.manifest.agent,
                       connectAdvice(agent));
    examination.isKnown = true;
    return fine(agent + " is a valid identifier");
}

Finding examineCredential(Examination& examination) {
    const std::string &agent = examination.agent, &clientID = examination.manifest.clientID;
    const std::string& path = examination.manifest.credentialPath;
    try {
        const auto validated = CredentialValidator().validate(agent, clientID, absolutePath(path));
        examination.identity = {agent, clientID, validated.token};
        examination.isProved = true;
    } catch (const HelperFailure& mistake) {
        return failure(path + ": " + mistake.message(), connectAdvice(agent));
    } catch (const FileError& mistake) {
        return failure(path + ": " + mistake.what(),
                       "Put the file back. If it is lost: " + connectAdvice(agent));
    }
    struct stat status;
    if (stat(path.c_str(), &status) != 0 || status.st_uid != geteuid())
        return failure(path + " does not belong to this user.", connectAdvice(agent));
    if ((status.st_mode & 077) != 0)
        return failure("Other users have access to " + path, "chmod 600 " + HelperIO::shellQuoted(path));
    return fine(path);
}

}  // namespace quorvantis::doctor
