#include "imaging/ImageReferences.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "support/Characters.h"
#include "support/Hexadecimal.h"

namespace quorvantis::ImageReferences {

namespace {

constexpr std::size_t hashDigits = 64;

// What "$" of the platform's regular expressions (ICU) allows before the end of the text.
constexpr std::array<std::string_view, 9> lineTerminators = {"",     "\n",     "\v",     "\f",    "\r",
                                                             "\r\n", "\u0085", "\u2028", "\u2029"};

bool isHexDigit(char c) {
    return hexadecimalValue(c).has_value();
}

bool isLetterOrDigit(char c) {
    return isHexDigit(c) || (c >= 'g' && c <= 'z') || (c >= 'G' && c <= 'Z');
}

bool startsWithHash(std::string_view text) {
    return text.size() >= hashDigits && std::all_of(text.begin(), text.begin() + hashDigits, isHexDigit);
}

/// Whether the prefix at `start` begins a reference.
bool isReferenceAt(std::string_view prompt, std::size_t start) {
    const std::string_view digits = prompt.substr(start + prefix.size());
    if (!startsWithHash(digits)) return false;
    return digits.size() == hashDigits || !isLetterOrDigit(digits[hashDigits]);
}

}  // namespace

std::optional<std::string> assetHash(std::string_view reference) {
    if (!reference.starts_with(prefix)) return std::nullopt;
    const std::string_view rest = reference.substr(prefix.size());
    if (!startsWithHash(rest)) return std::nullopt;
    const std::string_view end = rest.substr(hashDigits);
    if (std::find(lineTerminators.begin(), lineTerminators.end(), end) == lineTerminators.end())
        return std::nullopt;
    return lowerCased(rest);
}

std::vector<std::string> inPrompt(std::string_view prompt) {
    std::vector<std::string> references;
    for (std::size_t at = 0; (at = prompt.find(prefix, at)) != prompt.npos;) {
        if (!isReferenceAt(prompt, at)) {
            ++at;
            continue;
        }
        const std::size_t end = at + prefix.size() + hashDigits;
        if (isCharacterBoundary(prompt, at) && isCharacterBoundary(prompt, end))
            references.emplace_back(prompt.substr(at, end - at));
        at = end;
    }
    return references;
}

}  // namespace quorvantis::ImageReferences
