#include "Options.h"

#include <array>
#include <getopt.h>
#include <string>

#include "OptionReader.h"
#include "support/Paths.h"

namespace quorvantis::doctor {

const char* const helpText =
    "Usage: quorvantis-doctor [--folder DIR] [--json] [AGENT]...\n"
    "       quorvantis-doctor [--folder DIR] --config CLIENT AGENT\n"
    "\n"
    "Finds out why an agent does not get through to Quorvantis: checks what the agents named,\n"
    "or all that are registered, need, and says what to do. The second form prints what to\n"
    "paste into a client, to make it start the server for the agent. Changes nothing.\n"
    "\n"
    "  -f, --folder DIR      look at the folder of a stand-in\n"
    "  -c, --config CLIENT   a client: claude-code, codex, cursor, vscode, gemini, opencode,\n"
    "                        copilot, qwen or cline\n"
    "  -j, --json            print the report as JSON\n"
    "  -h, --help            print this and exit\n";

namespace {

constexpr std::array<option, 5> longOptions = {{
    {"folder", required_argument, nullptr, 'f'},
    {"config", required_argument, nullptr, 'c'},
    {"json", no_argument, nullptr, 'j'},
    {"help", no_argument, nullptr, 'h'},
    {nullptr, 0, nullptr, 0},
}};

}  // namespace

Options parsedOptions(int count, char** arguments) {
    Options options;
    options.agents = readOptions(count, arguments, longOptions, [&](int letter, const char* value) {
        switch (letter) {
            case 'f': options.folder = absolutePath(value); return;
            case 'c': options.client = value; return;
            case 'j': options.wantsJSON = true; return;
            case 'h': options.wantsHelp = true; return;
        }
    });
    if (options.client && options.agents.size() != 1 && !options.wantsHelp)
        failWithHint("Name one agent after --config " + *options.client + ".");
    return options;
}

}  // namespace quorvantis::doctor
