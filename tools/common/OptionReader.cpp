#include "OptionReader.h"

#include <cstddef>
#include <functional>
#include <getopt.h>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace quorvantis {

namespace {

/// What getopt_long(3) wants: the letters, a colon behind those that take a value. The first colon makes it
/// tell a value that is missing from an option that is unknown.
std::string lettersOf(std::span<const option> options) {
    std::string letters = ":";
    for (const option& option : options.first(options.size() - 1)) {
        letters += static_cast<char>(option.val);
        letters.append(static_cast<std::size_t>(option.has_arg), ':');
    }
    return letters;
}

}  // namespace

std::vector<std::string> readOptions(int count, char** arguments, std::span<const option> options,
                                     const std::function<void(int letter, const char* value)>& take) {
    const std::string letters = lettersOf(options);
    opterr = 0;
    for (int letter;
         (letter = getopt_long(count, arguments, letters.c_str(), options.data(), nullptr)) != -1;) {
        const std::string word = arguments[optind - 1];
        if (letter == '?') failWithHint("Unknown option " + word + ".");
        const bool isEmpty = optarg && *optarg == '\0';
        if (letter == ':') failWithHint("The option " + word + " needs a value.");
        if (isEmpty) failWithHint("An option has an empty value.");
        take(letter, optarg);
    }
    return {arguments + optind, arguments + count};
}

void failWithHint(const std::string& message) {
    throw std::runtime_error(message + " Try --help.");
}

}  // namespace quorvantis
