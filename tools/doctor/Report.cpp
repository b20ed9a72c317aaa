#include "Report.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <string>
#include <unistd.h>
#include <vector>

#include "Finding.h"
#include "json/JSONWriter.h"
#include "platform/Process.h"
#include "support/HelperIO.h"
#include "support/UTF8.h"

namespace quorvantis::doctor {

namespace {

struct LevelName {
    const char* name;
    const char* colour;  // ECMA-48, 8.3.117
};

const LevelName& nameOf(Level level) {
    static constexpr std::array<LevelName, 3> names = {
        {{"ok", "\033[32m"}, {"note", "\033[33m"}, {"fail", "\033[1;31m"}}};
    return names[static_cast<std::size_t>(level)];
}

bool hasColours() {
    return isatty(STDOUT_FILENO) && platform::environmentVariable("NO_COLOR").value_or("").empty();
}

}  // namespace

void printText(const std::vector<Result>& results) {
    const bool coloured = hasColours();
    std::string agent;
    for (const Result& result : results) {
        if (result.agent != agent) std::printf("\n%s\n", HelperIO::oneLine(result.agent).c_str());
        agent = result.agent;
        const auto& [name, colour] = nameOf(result.finding.level);
        std::printf("  %s%-4s%s  %-10s  %s\n", coloured ? colour : "", name, coloured ? "\033[0m" : "",
                    std::string(result.check).c_str(), HelperIO::oneLine(result.finding.text).c_str());
        if (!result.finding.advice.empty())
            std::printf("%20s%s\n", "", HelperIO::oneLine(result.finding.advice).c_str());
    }
    std::printf("\n%s\n", isHealthy(results)
                              ? "Nothing is wrong. A client reads its configuration at its start."
                              : "Something is wrong: see the lines that begin with \"fail\".");
}

void printJSON(const std::vector<Result>& results) {
    JSONWriter writer(Slashes::bare);
    writer.beginObject();
    writer.members("ok", isHealthy(results));
    writer.key("checks");
    writer.beginArray();
    for (const auto& [agent, check, finding] : results) {
        writer.beginObject();
        if (!agent.empty()) writer.members("agent", repairedUTF8(agent));
        writer.members("check", check, "result", nameOf(finding.level).name, "text",
                       repairedUTF8(finding.text));
        if (!finding.advice.empty()) writer.members("advice", repairedUTF8(finding.advice));
        writer.endObject();
    }
    writer.endArray();
    writer.endObject();
    std::puts(writer.take().c_str());
}

bool isHealthy(const std::vector<Result>& results) {
    return std::none_of(results.begin(), results.end(),
                        [](const Result& result) { return result.finding.level == Level::fail; });
}

}  // namespace quorvantis::doctor
