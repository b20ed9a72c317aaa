#include <algorithm>
#include <errno.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <set>
#include <sstream>
#include <string>

#include "support/Files.h"
#include "support/HelperFailure.h"

namespace quorvantis {

using Texts = std::set<std::string>;

/// The lines, but for those that are a comment, without the blanks before them.
static std::string withoutComments(const std::string& source) {
    std::istringstream stream(source);
    std::string text;
    for (std::string line; std::getline(stream, line);) {
        line.erase(0, line.find_first_not_of(' '));
        if (!line.starts_with("//")) text += line;
    }
    for (std::size_t quote; (quote = text.find("'\"'")) != text.npos;) text.erase(quote, 3);
    return text;
}

/// The sentences in a source, as users read them.
static Texts messagesIn(const std::string& source) {
    const std::string text = withoutComments(source);
    Texts texts;
    for (std::size_t start = 0, end = 0; (start = text.find('"', end)) != text.npos; ++end) {
        const std::string before = text.substr(0, start);
        std::string literal;
        do {  // adjacent literals are one
            for (end = start + 1; text[end] != '"'; ++end)
                if (text[end] == '\\') ++end;
            literal += text.substr(start + 1, end - start - 1);
            start = end + 1;
        } while (text[start] == '"');
        const bool isSentence = isupper(literal[0]) || literal.ends_with('.');
        if (!isSentence || literal.find(' ') == literal.npos) continue;
        if (before.ends_with("::invalidArguments("))
            texts.insert(HelperFailure::invalidArguments(literal).what());
        else if (before.ends_with("::invalidRequest("))
            texts.insert(HelperFailure::invalidRequest(literal).what());
        else
            texts.insert(literal);
    }
    return texts;
}

static Texts messagesOfTheServer() {
    Texts texts;
    for (const auto& file : std::filesystem::recursive_directory_iterator(QUORVANTIS_SOURCE)) {
        const auto name = file.path().lexically_relative(QUORVANTIS_SOURCE);
        const bool isElsewhere = *name.begin() == "decoder" || *name.begin() == "platform" ||
                                 name == "mcp/ToolTable.cpp" || name == "support/Files.cpp";
        if (name.extension() == ".cpp" && !isElsewhere) texts.merge(messagesIn(readFile(file.path())));
    }
    for (const int code : {ENOENT, EACCES, EIO}) texts.insert(FileError::reading("NAME", code).what());
    // Two that are no messages, and one that the server never shows.
    for (const auto other :
         {"Library/Application Support/Quorvantis", "MCP client", "Could not restrict permissions for "})
        EXPECT_EQ(texts.erase(other), 1u) << other;
    return texts;
}

TEST(MessagesTest, AreExplainedInTheReadme) {
    std::istringstream readme(readFile(QUORVANTIS_SOURCE "/../README.md"));
    std::string line;
    while (line != "### Messages") ASSERT_TRUE(std::getline(readme, line));
    Texts explained;
    while (std::getline(readme, line) && !line.starts_with("## ")) {
        if (!line.starts_with("| `")) continue;
        explained.insert(line.substr(3, line.find("` | ") - 3));
        EXPECT_EQ(std::count(line.begin(), line.end(), '|'), 4) << line;
        EXPECT_EQ(line.find("| |"), line.npos) << line;
    }
    EXPECT_EQ(explained, messagesOfTheServer());
}

}  // namespace quorvantis
