#include "imaging/ImageReferences.h"

#include <gtest/gtest.h>

#include "support/Characters.h"

namespace quorvantis {

using ImageReferences::assetHash;
using ImageReferences::inPrompt;

static const std::string digits = "0123456789abcdef0123456789abcdef0123456789abcdef0123456789abcdef";
static const std::string upperCase = "0123456789ABCDEF0123456789ABCDEF0123456789ABCDEF0123456789ABCDEF";
static const std::string reference = "quorvantis://image/" + digits;

TEST(ImageReferencesTest, NameAnAssetByItsHash) {
    EXPECT_EQ(assetHash("quorvantis://image/" + upperCase), digits);
    for (const std::string end : {"", "\n", "\v", "\f", "\r", "\r\n", "\u0085", "\u2028", "\u2029"})
        EXPECT_EQ(assetHash(reference + end), digits + end) << end;
    for (const std::string& text :
         {digits, "Quorvantis://image/" + digits, "quorvantis://image/" + digits.substr(1), reference + "0",
          " " + reference, reference + " ", reference + "\n\n", reference + "\n\r", reference + "\u0300",
          "quorvantis://image/" + digits.substr(1) + "g", "quorvantis://image/" + digits.substr(2) + "Å",
          std::string("quorvantis://image/")})
        EXPECT_FALSE(assetHash(text)) << text;
}

TEST(ImageReferencesTest, AreFoundInPrompts) {
    const std::string other = "quorvantis://image/" + upperCase;
    const std::pair<std::string, std::vector<std::string>> cases[] = {
        {"", {}},
        {"see " + reference + ".", {reference}},
        {"x" + other + " " + reference + "_" + reference + "é", {other, reference, reference}},
        {other + "\n" + reference + "\n" + other, {other, reference, other}},
        {reference + "x " + reference + "0 " + reference.substr(0, 82) + " QUORVANTIS" + reference.substr(10),
         {}},
        {reference + "\u0301 " + reference + "\u200D " + reference + "\uFE0F \u0600" + reference, {}},
        {"quorvantis://image/" + reference, {reference}},
        {"👩‍👩‍👧" + reference + "👩‍👩‍👧", {reference}},
    };
    for (const auto& [prompt, found] : cases) EXPECT_EQ(inPrompt(prompt), found) << prompt;
}

TEST(CharactersTest, AreGraphemeClusters) {
    const std::pair<std::string, std::size_t> cases[] = {
        {"", 0},           {"a\r\nb", 3}, {"e\u0301", 1}, {"👩‍👩‍👧🇩🇪🇫🇷", 3},
        {"각가\u11a8", 2}, {"\u0600a", 1}};
    for (const auto& [text, count] : cases) EXPECT_EQ(characterCount(text), count) << text;
    EXPECT_EQ(lowerCased("ÀΣİẞ\U00010400K0"), "àσi\u0307ß\U00010428k0");
}

}  // namespace quorvantis
