#include <csignal>
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <stdlib.h>
#include <string>
#include <unistd.h>

#include "Additions.h"
#include "History.h"
#include "Options.h"
#include "Service.h"
#include "integration/HelperPaths.h"
#include "json/UUID.h"
#include "mcp/Version.h"
#include "support/HelperIO.h"

namespace quorvantis::standin {

namespace {

/// Makes HelperPaths return paths in the folder, as the servers will.
void useFolder(const std::string& folder) {
    setenv("QUORVANTIS_TESTING", "1", 1);
    setenv("QUORVANTIS_APP_SUPPORT", folder.c_str(), 1);
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
