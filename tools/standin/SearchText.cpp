#include "SearchText.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <utf8proc.h>
#include <vector>

#include "HistoryEntry.h"

namespace quorvantis::standin {

namespace {

constexpr std::size_t indexedCharacters = 3;  // FTS5's trigram tokenizer
constexpr std::size_t maximumParts = 32;      // of a query; more cost time and hardly exclude more

std::string folded(std::string_view text) {
    utf8proc_uint8_t* result = nullptr;
    const auto bytes = reinterpret_cast<const utf8proc_uint8_t*>(text.data());
    const auto options =
        static_cast<utf8proc_option_t>(UTF8PROC_STABLE | UTF8PROC_COMPOSE | UTF8PROC_CASEFOLD);
    const auto size = utf8proc_map(bytes, static_cast<utf8proc_ssize_t>(text.size()), &result, options);
    const std::unique_ptr<utf8proc_uint8_t, decltype(&std::free)> owner(result, &std::free);
    std::string copy(
        size < 0 ? text
                 : std::string_view(reinterpret_cast<const char*>(result), static_cast<std::size_t>(size)));
    std::replace(copy.begin(), copy.end(), '\0', ' ');  // at which the tokenizer would end
    return copy;
}

std::vector<std::string> words(const std::string& text) {
    constexpr std::string_view spaces = " \t\n\r";
    std::vector<std::string> words;
    for (std::size_t start = 0; (start = text.find_first_not_of(spaces, start)) != text.npos;) {
        const std::size_t end = std::min(text.find_first_of(spaces, start), text.size());
        words.push_back(text.substr(start, end - start));
        start = end;
    }
    return words;
}

/// The places at which the characters of the word begin, and its end.
std::vector<std::size_t> characterPlaces(std::string_view word) {
    std::vector<std::size_t> places;
    for (std::size_t i = 0; i < word.size(); ++i)
        if ((word[i] & 0xC0) != 0x80) places.push_back(i);
    places.push_back(word.size());
    return places;
}

std::string quoted(std::string_view part) {
    std::string text = "\"";
    for (const char c : part) text.append(c == '"' ? 2 : 1, c);
    return text + "\" ";
}

}  // namespace

SearchQuery::SearchQuery(std::string_view query) : words_(words(folded(query))) {}

std::string SearchQuery::indexQuery() const {
    std::string query;
    std::size_t parts = 0;
    for (const std::string& word : words_) {
        const auto places = characterPlaces(word);
        for (std::size_t i = 0; i + indexedCharacters < places.size() && parts < maximumParts; ++i, ++parts)
            query += quoted({word.data() + places[i], places[i + indexedCharacters] - places[i]});
    }
    return query;
}

bool SearchQuery::matches(std::string_view text) const {
    return std::all_of(words_.begin(), words_.end(),
                       [&](const std::string& word) { return text.find(word) != text.npos; });
}

std::string searchedText(const HistoryEntry& entry) {
    std::string text = entry.kind + "\n" + entry.preview + "\n" + entry.detail;
    for (const auto& more : {entry.sourceApplication, entry.text}) text += "\n" + more.value_or("");
    for (const std::string& path : entry.filePaths.value_or(std::vector<std::string>())) text += "\n" + path;
    return folded(text);
}

}  // namespace quorvantis::standin
