#include "Options.h"

#include <array>
#include <getopt.h>
#include <string>

#include "Fault.h"
#include "OptionReader.h"
#include "integration/AgentIdentifier.h"
#include "support/Paths.h"

namespace quorvantis::standin {

const char* const helpText =
    "Usage: quorvantis-standin --folder DIR [--agent AGENT]... [--images DIR]...\n"
    "           [--prompt-image NAME]... [--workspace DIR]\n"
    "           [--refuse-history[=AGENT]]... [--fault KIND]\n"
    "       quorvantis-standin --folder DIR --add TEXT [--kind KIND] [--source NAME]\n"
    "       quorvantis-standin --folder DIR --import FILE\n"
    "       quorvantis-standin --folder DIR --export | --delete ID | --clear\n"
    "\n"
    "Stands in for the Quorvantis desktop application: prepares an\n"
    "application-support folder with a clipboard history, serves its broker socket,\n"
    "and shows which clients connect. Stop it with Ctrl-C. The other forms change or\n"
    "show the history, also while it is being served.\n"
    "\n"
    "  -f, --folder DIR     the application-support folder; made when it is missing\n"
    "  -a, --agent AGENT    an agent to register: codex, claude-code, cursor or\n"
    "                       custom-UUID; codex when left out; may be repeated\n"
    "  -i, --images DIR     a folder whose pictures are in the history too, like\n"
    "                       those of its subfolders; may be repeated\n"
    "  -p, --prompt-image NAME\n"
    "                       a picture of these folders in the current prompt of a\n"
    "                       cursor session; may be repeated\n"
    "  -w, --workspace DIR  the workspace of that session; the current folder when\n"
    "                       left out\n"
    "  -r, --refuse-history[=AGENT]\n"
    "                       refuse the history to the agent, or to all that are\n"
    "                       registered; may be repeated\n"
    "  -F, --fault KIND     answer wrongly, to test an agent: slow, silent, hang-up,\n"
    "                       oversized, garbage or wrong-id\n"
    "  -t, --add TEXT       add a copy of the text, or if it is \"-\" of what standard\n"
    "                       input holds: a picture, text in UTF-8, or URLs of files\n"
    "  -k, --kind KIND      what the copy is, in one word, as in \"code\"\n"
    "  -s, --source NAME    the application that it is from\n"
    "  -I, --import FILE    add the entries of a JSON file\n"
    "  -E, --export         print all entries as JSON\n"
    "  -D, --delete ID      delete an entry\n"
    "  -C, --clear          delete all entries\n"
    "  -h, --help           print this and exit\n"
    "  -V, --version        print the version and exit\n";

namespace {

constexpr std::array<option, 17> longOptions = {{
    {"folder", required_argument, nullptr, 'f'},
    {"agent", required_argument, nullptr, 'a'},
    {"images", required_argument, nullptr, 'i'},
    {"prompt-image", required_argument, nullptr, 'p'},
    {"workspace", required_argument, nullptr, 'w'},
    {"refuse-history", optional_argument, nullptr, 'r'},
    {"fault", required_argument, nullptr, 'F'},
    {"add", required_argument, nullptr, 't'},
    {"kind", required_argument, nullptr, 'k'},
    {"source", required_argument, nullptr, 's'},
    {"import", required_argument, nullptr, 'I'},
    {"export", no_argument, nullptr, 'E'},
    {"delete", required_argument, nullptr, 'D'},
    {"clear", no_argument, nullptr, 'C'},
    {"help", no_argument, nullptr, 'h'},
    {"version", no_argument, nullptr, 'V'},
    {nullptr, 0, nullptr, 0},
}};

using Task = Options::Task;

void setTask(Options& options, Task task, const char* subject = "") {
    if (options.task != Task::serve && task < Task::showHelp)
        failWithHint("Name one of --add, --import, --export, --delete and --clear.");
    if (options.task < Task::showHelp) options.task = task;
    options.subject = subject;
}

Fault requiredFault(const std::string& name) {
    const auto fault = faultNamed(name);
    if (!fault) failWithHint("\"" + name + "\" is no fault.");
    return *fault;
}

const std::string& validAgent(const std::string& agent) {
    if (!AgentIdentifier::isValid(agent)) failWithHint("\"" + agent + "\" is no agent identifier.");
    return agent;
}

void take(Options& options, int letter, const char* value) {
    switch (letter) {
        case 'f': options.folder = absolutePath(value); return;
        case 'a': options.agents.push_back(validAgent(value)); return;
        case 'i': options.images.push_back(absolutePath(value)); return;
        case 'p': options.promptImages.emplace_back(value); return;
        case 'w': options.workspace = absolutePath(value); return;
        case 'r': options.refusedAgents.insert(value ? validAgent(value) : ""); return;
        case 'F': options.fault = requiredFault(value); return;
        case 'k': options.hints.kind = value; return;
        case 's': options.hints.source = value; return;
        case 't': return setTask(options, Task::add, value);
        case 'I': return setTask(options, Task::import, value);
        case 'E': return setTask(options, Task::exportAll);
        case 'D': return setTask(options, Task::remove, value);
        case 'C': return setTask(options, Task::clear);
        case 'h': return setTask(options, Task::showHelp);
        case 'V': return setTask(options, Task::showVersion);
    }
}

void complete(Options& options) {
    if (options.folder.empty()) failWithHint("Name a folder with --folder.");
    if ((options.hints.kind || options.hints.source) && options.task != Task::add)
        failWithHint("--kind and --source go with --add.");
    if (options.images.empty() && !options.promptImages.empty())
        failWithHint("Name the folder of the prompt's pictures with --images.");
    if (options.workspace.empty()) options.workspace = absolutePath("");
    if (options.agents.empty()) options.agents = {"codex"};
    if (options.refusedAgents.contains(""))
        options.refusedAgents.insert(options.agents.begin(), options.agents.end());
}

}  // namespace

Options parsedOptions(int count, char** arguments) {
    Options options;
    const auto others = readOptions(count, arguments, longOptions,
                                    [&](int letter, const char* value) { take(options, letter, value); });
    if (!others.empty()) failWithHint("Unexpected argument " + others[0] + ".");
    if (options.task < Task::showHelp) complete(options);
    return options;
}

}  // namespace quorvantis::standin
