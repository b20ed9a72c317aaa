#include "Options.h"

#include <array>
#include <getopt.h>
#include <stdexcept>
#include <string>

#include "integration/AgentIdentifier.h"
#include "support/Paths.h"

namespace quorvantis::standin {

const char* const helpText =
    "Usage: quorvantis-standin --folder DIR [--agent AGENT]... [--history FILE] [--refuse-history]\n"
    "                          [--images DIR [--prompt-image NAME]... [--workspace DIR]]\n"
    "       quorvantis-standin --folder DIR [--history FILE] --add TEXT\n"
    "\n"
    "Stands in for the Quorvantis desktop application: prepares an application-support\n"
    "folder, serves its broker socket, and shows which clients connect. Stop it with Ctrl-C.\n"
    "\n"
    "  -f, --folder DIR       the application-support folder; made when it is missing\n"
    "  -a, --agent AGENT      an agent to register: codex, claude-code, cursor or custom-UUID;\n"
    "                         may be given more than once; codex when left out\n"
    "  -H, --history FILE     the history to serve; history.json in the folder when left out\n"
    "  -r, --refuse-history   refuse the history, as for an agent without access to it\n"
    "  -i, --images DIR       a folder of images to recognise and to hand out copies of\n"
    "  -p, --prompt-image NAME\n"
    "                         an image of that folder in the current prompt of a cursor session\n"
    "  -w, --workspace DIR    the workspace of that session; the current folder when left out\n"
    "  -t, --add TEXT         add a text to the history and exit\n"
    "  -h, --help             print this and exit\n";

namespace {

constexpr std::array<option, 10> longOptions = {{
    {"folder", required_argument, nullptr, 'f'},
    {"agent", required_argument, nullptr, 'a'},
    {"history", required_argument, nullptr, 'H'},
    {"refuse-history", no_argument, nullptr, 'r'},
    {"images", required_argument, nullptr, 'i'},
    {"prompt-image", required_argument, nullptr, 'p'},
    {"workspace", required_argument, nullptr, 'w'},
    {"add", required_argument, nullptr, 't'},
    {"help", no_argument, nullptr, 'h'},
    {nullptr, 0, nullptr, 0},
}};

[[noreturn]] void fail(const std::string& message) {
    throw std::runtime_error(message + " Try --help.");
}

void take(Options& options, int letter, const char* word) {
    switch (letter) {
        case 'f': options.folder = absolutePath(optarg); return;
        case 'a': options.agents.emplace_back(optarg); return;
        case 'H': options.history = absolutePath(optarg); return;
        case 'r': options.refusesHistory = true; return;
        case 'i': options.images = absolutePath(optarg); return;
        case 'p': options.promptImages.emplace_back(optarg); return;
        case 'w': options.workspace = absolutePath(optarg); return;
        case 't': options.addedText = optarg; return;
        case 'h': options.wantsHelp = true; return;
        case ':': fail(std::string("The option ") + word + " needs a value.");
        default: fail(std::string("Unknown option ") + word + ".");
    }
}

void complete(Options& options) {
    if (options.folder.empty()) fail("Name a folder with --folder.");
    if (options.images.empty() && !options.promptImages.empty())
        fail("Name the folder of the prompt's images with --images.");
    if (options.history.empty()) options.history = joinedPath(options.folder, "history.json");
    if (options.workspace.empty()) options.workspace = absolutePath("");
    if (options.agents.empty()) options.agents = {"codex"};
    for (const std::string& agent : options.agents)
        if (!AgentIdentifier::isValid(agent)) fail("\"" + agent + "\" is no agent identifier.");
}

}  // namespace

Options parsedOptions(int count, char** arguments) {
    Options options;
    opterr = 0;
    for (int letter;
         (letter = getopt_long(count, arguments, ":f:a:H:ri:p:w:t:h", longOptions.data(), nullptr)) != -1;)
        take(options, letter, arguments[optind - 1]);
    if (optind < count) fail(std::string("Unexpected argument ") + arguments[optind] + ".");
    if (!options.wantsHelp) complete(options);
    return options;
}

}  // namespace quorvantis::standin
