#include "Service.h"

#include <cstddef>
#include <cstdio>
#include <exception>
#include <optional>
#include <poll.h>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unistd.h>
#include <utility>
#include <vector>

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
#include "support/Files.h"
#include "support/Paths.h"

namespace quorvantis::standin {

namespace {

constexpr int pollInterval = 500;  // milliseconds between readings of the session records

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

/// Reads the pictures that are not known yet, with a line on a terminal that says how far it is. Returns
/// false when it was stopped.
bool readPictures(ImageLibrary& images, int stop) {
    const bool isShown = isatty(STDERR_FILENO) == 1;
    const std::size_t count = images.unread();
    while (images.unread() > 0) {
        pollfd stopped = {stop, POLLIN, 0};
        if (poll(&stopped, 1, 0) > 0) return false;
        if (isShown) std::fprintf(stderr, "\rReading pictures: %zu of %zu", count - images.unread(), count);
        images.readSome();
    }
    if (isShown && count > 0) std::fputs("\r\33[K", stderr);
    return true;
}

/// Looks at the folders again when they may have changed, and reads what is new, some files at a time.
class Pictures {
  public:
    explicit Pictures(ImageLibrary& images) : images_(images) { look(); }

    int descriptor() const { return changes_.descriptor(); }
    bool isBusy() const { return images_.unread() > 0; }

    void update() {
        if (changes_.take()) isLookDue_ = true;
        try {
            if (isLookDue_) look();
            if (isBusy()) images_.readSome();
        } catch (const std::exception& failure) {
            log(failure.what());
            isLookDue_ = true;
        }
    }

  private:
    void look() {
        do images_.look();
        while (changes_.add(images_.folders()));
        isLookDue_ = false;
    }

    ImageLibrary& images_;
    FolderWatch changes_;
    bool isLookDue_ = false;
};

CurrentPrompt promptOf(const Options& options, const ImageLibrary& images) {
    CurrentPrompt prompt = {.images = {}, .workspaceRoot = options.workspace};
    for (const std::string& name : options.promptImages) prompt.images.push_back(images.fileNamed(name));
    return prompt;
}

}  // namespace

void serve(const Options& options) {
    const std::string socketPath = HelperPaths().socket;
    BrokerSocket::checkLength(socketPath);
    ImageLibrary::checkFolders(options.images);
    makeFolder(parentPath(socketPath));
    BrokerSocket socket(socketPath);
    History history(HelperPaths().database);
    ImageLibrary images(history, options.images);
    const int stop = stopSignalDescriptor();
    Pictures pictures(images);
    if (!readPictures(images, stop)) return;
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
            {stop, POLLIN, 0}, {signals.descriptor(), POLLIN, 0}, {pictures.descriptor(), POLLIN, 0}};
        socket.addTo(waiting);
        const int ready =
            poll(waiting.data(), static_cast<nfds_t>(waiting.size()), pictures.isBusy() ? 0 : pollInterval);
        if (waiting[0].revents != 0) break;
        if (signals.take() || ready == 0) clients.update();
        socket.serve(handle);
        pictures.update();
    }
    log("stopped");
}

}  // namespace quorvantis::standin
