#include <csignal>
#include <cstdio>
#include <exception>
#include <poll.h>
#include <stdlib.h>
#include <string>
#include <string_view>
#include <vector>

#include "Broker.h"
#include "BrokerSocket.h"
#include "ClientWatch.h"
#include "HistoryEntry.h"
#include "HistoryFile.h"
#include "ImageLibrary.h"
#include "Installation.h"
#include "Operations.h"
#include "Options.h"
#include "SessionSignals.h"
#include "Terminal.h"
#include "integration/HelperPaths.h"
#include "json/JSON.h"
#include "json/JSONWriter.h"
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

std::vector<Installation> registerAll(const std::vector<std::string>& agents) {
    std::vector<Installation> installations;
    for (const std::string& agent : agents) installations.push_back(registerAgent(agent));
    return installations;
}

void printIntroduction(const HistoryFile& history, const ImageLibrary& images,
                       const std::vector<Installation>& agents) {
    std::printf("Quorvantis stand-in\n\n  socket   %s\n  history  %s, %zu entries\n  images   %zu\n",
                HelperPaths().socket.c_str(), history.path().c_str(), history.entries().size(),
                images.assets().size());
    for (const Installation& agent : agents)
        std::printf("\nWhat to paste into a client, to connect it as %s:\n\n    %s\n",
                    agent.identity.agent.c_str(), agent.doctorCommand().c_str());
    std::printf("\nServing. Stop with Ctrl-C.\n\n");
    std::fflush(stdout);
}

Operations operationsFor(const HistoryFile& history, const ImageLibrary& images, const CurrentPrompt& prompt,
                         const Options& options) {
    Operations operations;
    operations["status"] = [&](JSON, JSONWriter& reply) {
        reply.members("running", true, "applicationName", "Quorvantis stand-in",  //
                      "fullHistoryAccess", !options.refusesHistory,               //
                      "historyEntryCount", history.entries().size(),              //
                      "imageCount", images.assets().size());
    };
    addHistoryOperations(operations, history, options.refusesHistory);
    addImageOperations(operations, images, prompt);
    return operations;
}

void serve(BrokerSocket& socket, const Broker& broker, ClientWatch& clients, int stop) {
    SessionSignals signals;
    const auto handle = [&](std::string_view request) {
        clients.update();
        return broker.handle(request);
    };
    for (;;) {
        std::vector<pollfd> waiting = {{stop, POLLIN, 0}, {signals.descriptor(), POLLIN, 0}};
        socket.addTo(waiting);
        const int ready = poll(waiting.data(), static_cast<nfds_t>(waiting.size()), pollInterval);
        if (waiting[0].revents != 0) return;
        if (signals.take() || ready == 0) clients.update();
        socket.serve(handle);
    }
}

void run(const Options& options) {
    useFolder(options.folder);
    HistoryFile(options.history).createIfMissing();
    if (options.addedText) return HistoryFile(options.history).add(*options.addedText);
    const auto images = options.images.empty() ? ImageLibrary() : ImageLibrary(options.images);
    const auto prompt = promptWith(options.promptImages, images, options.workspace);
    const HistoryFile history(options.history, imageEntries(images));
    const int stop = stopSignalDescriptor();
    const auto agents = registerAll(options.agents);
    makeFolders(parentPath(HelperPaths().socket));
    BrokerSocket socket(HelperPaths().socket);
    printIntroduction(history, images, agents);
    ClientWatch clients(options.agents);
    serve(socket, Broker(agents, operationsFor(history, images, prompt, options)), clients, stop);
    log("stopped");
}

}  // namespace

}  // namespace quorvantis::standin

int main(int count, char** arguments) {
    using namespace quorvantis;
    std::signal(SIGPIPE, SIG_IGN);
    try {
        const auto options = standin::parsedOptions(count, arguments);
        if (options.wantsHelp)
            std::fputs(standin::helpText, stdout);
        else
            standin::run(options);
        return 0;
    } catch (const std::exception& failure) {
        HelperIO::error("quorvantis-standin: " + std::string(failure.what()));
        return 1;
    }
}
