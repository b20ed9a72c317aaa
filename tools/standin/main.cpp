#include <csignal>
#include <cstddef>
#include <cstdio>
#include <exception>
#include <optional>
#include <poll.h>
#include <stdexcept>
#include <stdlib.h>
#include <string>
#include <string_view>
#include <unistd.h>
#include <utility>
#include <vector>

#include "Additions.h"
#include "Broker.h"
#include "BrokerSocket.h"
#include "ClientWatch.h"
#include "Fault.h"
#include "FolderWatch.h"
#include "History.h"
#include "ImageLibrary.h"
#include "Installation.h"
#include "Operations.h"
#include "Options.h"
#include "SessionSignals.h"
#include "Terminal.h"
#include "integration/HelperPaths.h"
#include "json/UUID.h"
#include "mcp/Version.h"
#include "support/Files.h"
#include "support/HelperIO.h"
#include "support/Paths.h"

namespace quorvantis::standin {

namespace {

constexpr int pollInterval = 500;  // milliseconds between readings of the session records

/// Makes HelperPaths return paths in the folder, as the servers will.
void useFolder(const std::string& folder) {
    setenv("QUORVANTIS_TESTING", "1", 1);
    setenv("QUORVANTIS_APP_SUPPORT", folder.c_str(), 1);
}

void makeFolder(const std::string& path) {
    try {
        makeFolders(path);
    } catch (const FileError& failure) {
        throw std::runtime_error(path + ": " + failure.what());
    }
}

std::vector<Installation> registerAll(const std::vector<std::string>& agents) {
    std::vector<Installation> installations;
    for (const std::string& agent : agents) installations.push_back(registerAgent(agent));
    return installations;
}

void printIntroduction(History& history, const std::vector<Installation>& agents) {
    std::printf("Quorvantis stand-in\n\n  socket   %s\n  history  %s, %s entries\n  images   %s\n",
                HelperPaths().socket.c_str(), history.database().path().c_str(),
                std::to_string(history.entryCount()).c_str(), std::to_string(history.pictureCount()).c_str());
    for (const Installation& agent : agents)
        std::printf("\nWhat to paste into a client, to connect it as %s:\n\n    %s\n",
                    agent.identity.agent.c_str(), agent.doctorCommand().c_str());
    std::printf("\nServing. Stop with Ctrl-C.\n\n");
    std::fflush(stdout);
}

/// Reads the pictures that are not known yet, with a line on a terminal that says how far it is.
void readPictures(ImageLibrary& images, int stop) {
    const bool isShown = isatty(STDERR_FILENO) == 1;
    images.look();
    const std::size_t count = images.unread();
    while (images.unread() > 0) {
        pollfd stopped = {stop, POLLIN, 0};
        if (poll(&stopped, 1, 0) > 0) throw std::runtime_error("Stopped while it read pictures.");
        if (isShown) std::fprintf(stderr, "\rReading pictures: %zu of %zu", count - images.unread(), count);
        images.readSome();
    }
    if (isShown && count > 0) std::fputs("\r\33[K", stderr);
}

CurrentPrompt promptOf(const Options& options, const ImageLibrary& images) {
    CurrentPrompt prompt = {.images = {}, .workspaceRoot = options.workspace};
    for (const std::string& name : options.promptImages) prompt.images.push_back(images.fileNamed(name));
    return prompt;
}

/// All checks come first, then the socket, then the manifests.
void serve(const Options& options) {
    const std::string socketPath = HelperPaths().socket;
    BrokerSocket::checkLength(socketPath);
    ImageLibrary::checkFolders(options.images);
    makeFolder(parentPath(socketPath));
    BrokerSocket socket(socketPath);
    History history(HelperPaths().database);
    ImageLibrary images(history, options.images);
    const int stop = stopSignalDescriptor();
    FolderWatch changes;
    const auto look = [&] {
        images.look();
        changes.add(images.folders());
    };
    readPictures(images, stop);
    look();  // at what came meanwhile, and from now on none is missed
    Operations operations;
    addHistoryOperations(operations, history, options.refusedAgents);
    addImageOperations(operations, history, promptOf(options, images));
    socket.listen();
    const auto agents = registerAll(options.agents);
    const Broker broker(agents, operations);
    ClientWatch clients(options.agents);
    printIntroduction(history, agents);

    SessionSignals signals;
    const auto handle = [&](std::string_view request) {
        clients.update();
        auto reply = broker.handle(request);
        return options.fault ? faultyReply(*options.fault, reply) : std::optional(std::move(reply));
    };
    for (;;) {
        std::vector<pollfd> waiting = {
            {stop, POLLIN, 0}, {signals.descriptor(), POLLIN, 0}, {changes.descriptor(), POLLIN, 0}};
        socket.addTo(waiting);
        const int ready =
            poll(waiting.data(), static_cast<nfds_t>(waiting.size()), images.unread() > 0 ? 0 : pollInterval);
        if (waiting[0].revents != 0) break;
        if (signals.take() || ready == 0) clients.update();
        if (changes.take()) look();
        socket.serve(handle);
        if (images.unread() > 0) images.readSome();
    }
    log("stopped");
}

/// The history that is there; to show or to delete one, none is made.
History existingHistory() {
    const std::string path = HelperPaths().database;
    if (access(path.c_str(), F_OK) != 0) throw std::runtime_error(path + ": There is no history.");
    return History(path);
}

void remove(const std::string& subject) {
    const auto id = UUID::parse(subject);
    if (!id || !existingHistory().remove(*id))
        throw std::runtime_error("There is no entry " + subject + " in " + HelperPaths().database + ".");
}

void import(const std::string& path) {
    History history(HelperPaths().database);
    std::printf("%zu entries are new.\n", importEntries(history, path));
}

void add(const Options& options) {
    const std::string copy = options.subject == "-" ? standardInput() : options.subject;
    History history(HelperPaths().database);
    addCopy(history, copy, options.hints);
}

void run(const Options& options) {
    using Task = Options::Task;
    useFolder(options.folder);
    switch (options.task) {
        case Task::serve: return serve(options);
        case Task::add: return add(options);
        case Task::import: return import(options.subject);
        case Task::exportAll: {
            History history = existingHistory();
            return exportEntries(history);
        }
        case Task::remove: return remove(options.subject);
        case Task::clear: return existingHistory().clear();
        case Task::showHelp: static_cast<void>(std::fputs(helpText, stdout)); return;
        case Task::showVersion:
            std::printf("quorvantis-standin %s\n", std::string(QuorvantisMCP::version).c_str());
    }
}

}  // namespace

}  // namespace quorvantis::standin

int main(int count, char** arguments) {
    using namespace quorvantis;
    std::signal(SIGPIPE, SIG_IGN);
    try {
        standin::run(standin::parsedOptions(count, arguments));
        if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0)
            throw std::runtime_error("Standard output cannot be written to.");
        return 0;
    } catch (const std::exception& failure) {
        HelperIO::error("quorvantis-standin: " + std::string(failure.what()));
        return 1;
    }
}
