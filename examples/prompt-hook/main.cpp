// A prompt hook: an agent runs it with each prompt that the user submits. It reads the prompt on standard
// input, counts the image references in it, and records what it saw for the desktop application.
//
//     prompt-hook AGENT CLIENT-ID < prompt

#include <array>
#include <cstdio>
#include <string>
#include <unistd.h>

#include "quorvantis/imaging/ImageReferences.h"
#include "quorvantis/state/PromptHookObservation.h"
#include "quorvantis/support/UTF8.h"

namespace {

std::string standardInput() {
    std::string text;
    std::array<char, 65536> buffer;
    for (ssize_t count; (count = read(STDIN_FILENO, buffer.data(), buffer.size())) > 0;)
        text.append(buffer.data(), static_cast<std::size_t>(count));
    return text;
}

}  // namespace

int main(int count, char** arguments) {
    if (count != 3) {
        std::fputs("usage: prompt-hook AGENT CLIENT-ID < prompt\n", stderr);
        return 2;
    }
    const std::string prompt = quorvantis::repairedUTF8(standardInput());
    const auto references = quorvantis::ImageReferences::inPrompt(prompt);
    quorvantis::PromptHookObservation::record(quorvantis::repairedUTF8(arguments[2]), arguments[1], 0,
                                              static_cast<std::int64_t>(references.size()),
                                              references.empty() ? "no references" : "references found");
    return 0;
}
