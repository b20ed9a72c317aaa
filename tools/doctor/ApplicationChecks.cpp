#include <array>
#include <cstddef>
#include <cstdint>
#include <ctime>
#include <exception>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include "Checks.h"
#include "Finding.h"
#include "Registrations.h"
#include "broker/BrokerClient.h"
#include "integration/HelperPaths.h"
#include "json/Date.h"
#include "json/JSON.h"
#include "json/JSONDocument.h"
#include "json/JSONFiles.h"
#include "state/MCPClientSession.h"
#include "support/HelperIO.h"

namespace quorvantis::doctor {

namespace {

std::string counted(const std::string& what, JSON count) {
    const auto number = count.integer();
    return number ? ", " + what + ": " + std::to_string(*number) : "";
}

/// In local time.
std::string timeText(Date date) {
    const double epoch = Date::sinceEpoch(0).secondsSinceReferenceDate;
    const auto seconds = static_cast<std::time_t>(date.secondsSinceReferenceDate - epoch);
    std::tm local;
    std::array<char, 32> text;
    return {text.data(),
            std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M", localtime_r(&seconds, &local))};
}

}  // namespace

Finding examineSocket(Examination& examination) {
    const std::string path = HelperPaths().socket;
    const std::string start = startAdvice(examination.agent);
    if (path.size() > maximumSocketPathSize)
        return failure(path + " has " + std::to_string(path.size()) + " bytes, and a socket's path " +
                           std::to_string(maximumSocketPathSize) + " at the most.",
                       "Use a folder with a shorter path.");
    struct stat status;
    if (lstat(path.c_str(), &status) != 0)
        return failure("Quorvantis is not running: there is no " + path, start);
    if (!S_ISSOCK(status.st_mode)) return failure(path + " is not a socket.", "Remove it. " + start);
    if (status.st_uid != geteuid())
        return failure(path + " belongs to another user.",
                       "Find out who made it: it would be sent the credential. Remove it. " + start);
    if ((status.st_mode & 0777) != 0600)
        return failure(path + " does not have mode 600.", "chmod 600 " + HelperIO::shellQuoted(path));
    examination.canAsk = BrokerClient::isLocalReachable(path);
    if (!examination.canAsk)
        return failure(
            "Quorvantis is not running: nobody listens at " + path + ", which an earlier one left.", start);
    return fine(path);
}

Finding examineStatus(Examination& examination) {
    try {
        const JSONDocument reply = BrokerClient{examination.identity}.call("status");
        const std::string name(reply["applicationName"].string().value_or("Quorvantis"));
        const std::string counts =
            counted("entries", reply["historyEntryCount"]) + counted("images", reply["imageCount"]);
        if (reply["running"].boolean() == false)
            return note(name + " says that it is not running" + counts, startAdvice(examination.agent));
        if (reply["fullHistoryAccess"].boolean() == false)
            return note(name + " is running, and refuses the history to this agent" + counts,
                        "If it is to search the history, allow it in " + name + ".");
        return fine(name + " is running, and lets this agent search the history" + counts);
    } catch (const std::exception& refusal) {
        return failure(std::string("Quorvantis says: ") + refusal.what(),
                       "Start Quorvantis again. If that does not help: " + connectAdvice(examination.agent));
    }
}

Finding examineSession(Examination& examination) {
    try {
        const auto session = HelperIO::readJSON<MCPClientSession>(MCPClientSession::url(examination.agent));
        const std::string client = "“" + session.clientName + "”";
        const std::string since = timeText(session.initializedAt);
        if (session.isRunning())
            return fine(client + " is connected since " + since + ", process " +
                        std::to_string(session.processID));
        return note("No client is connected now. The last one was " + client + ", on " + since + ".");
    } catch (const std::exception&) {
        return note("No client has connected yet.");
    }
}

}  // namespace quorvantis::doctor
