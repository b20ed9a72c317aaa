#include "json/JSONDocument.h"

#include <clocale>
#include <cstdlib>
#include <gtest/gtest.h>
#include <optional>
#include <vector>

#include "harness/TemporaryFolder.h"
#include "harness/Words.h"
#include "json/JSONWriter.h"
#include "json/NumberText.h"

namespace quorvantis {

static std::string nested(std::size_t depth) {
    return std::string(depth, '[') + std::string(depth, ']');
}

/// The text read and written again; empty when it is refused.
static std::string rewritten(std::string_view text) {
    const auto document = JSONDocument::parse(text);
    return document ? jsonText(document->root()).text : "";
}

TEST(JSONDocumentTest, ReadsValidTexts) {
    const std::string numbers = "[1e400,-1E+05,-0,0.10,123456789012345678901234567890]";
    EXPECT_EQ(rewritten(" \t\r\n[ 1 , true,false , null,{}]\n"), "[1,true,false,null,{}]");
    EXPECT_EQ(rewritten("\xEF\xBB\xBF\"x\""), "\"x\"");
    EXPECT_EQ(rewritten(numbers), numbers);
    const std::string exponents =
        R"([0e2147483648,1E-2147483649,"1e9999999999\"2e9999999999",-2.5e+99999999999999999999])";
    EXPECT_EQ(rewritten(exponents), exponents);
    const auto huge =
        JSONDocument::parse("[1e99999999999999999999,0e99999999999999999999,1e-99999999999999999999]")
            .value();
    std::vector<std::optional<std::int64_t>> integers;
    for (const JSON number : huge.root().elements()) integers.push_back(number.integer());
    EXPECT_EQ(integers, (std::vector<std::optional<std::int64_t>>{std::nullopt, 0, std::nullopt}));
    EXPECT_EQ(rewritten(nested(512)), nested(512));
    EXPECT_EQ(rewritten(R"({"b":{"x":1,"x":2},"a":2,"b":3,"\u0062":[4],"":5})"),
              R"({"b":{"x":1},"a":2,"":5})");
    EXPECT_EQ(rewritten(R"(["\ud83d\ude00\u00E9\u20ac\/\"\\\b\f\n\r\t","é","\u0000"])"),
              R"(["😀é€/\"\\\b\f\n\r\t","é","\u0000"])");
}

TEST(NumberTextTest, IsTheSameInALocaleWithACommaForThePoint) {
    const harness::TemporaryFolder folder;
    harness::writeText(folder / "source",
                       "LC_NUMERIC\ndecimal_point \",\"\nthousands_sep \"\"\ngrouping -1\nEND LC_NUMERIC\n");
    std::system(
        ("localedef -c -i " + (folder / "source") + " " + (folder / "comma") + " >/dev/null 2>&1").c_str());
    setenv("LOCPATH", folder.path().c_str(), 1);
    const bool isSet = std::setlocale(LC_NUMERIC, "comma") || std::setlocale(LC_NUMERIC, "de_DE.UTF-8");
    const std::string written = shortestNumberText(817000000.5);
    const auto read = doubleFromNumberText("817000000.5");
    const std::string point = std::localeconv()->decimal_point;
    std::setlocale(LC_NUMERIC, "C");
    unsetenv("LOCPATH");
    if (!isSet) GTEST_SKIP() << "no such locale can be made here";
    EXPECT_EQ(point, ",");
    EXPECT_EQ(written, "817000000.5");
    EXPECT_EQ(read, 817000000.5);
}

TEST(JSONDocumentTest, RefusesEverythingElse) {
    for (const auto& text :
         harness::words(R"({ [1,] {"a"} {"a":1,} {a:1} [1]x [][] nul True [NaN] [01] [1.] [.5]
             [+1] [1e] [-] [0x1] ['a'] ["\x"] ["\ud800"] ["\ud800\n"] ["\udc00"] ["\ud800\ud800"] ["\u12g4"]
             ["a] ["a\"] [\"a\"] [\u0031] [/**/] [1]//)"))
        EXPECT_FALSE(JSONDocument::parse(text)) << text;
    for (const std::string_view text :
         {"", " ", "[\"\t\"]", "[\"\xff\"]", "[\"\xc0\xaf\"]", "[\"\xed\xa0\x80\"]", "[\"\xe2\x82\"]",
          "\xEF\xBB\xBF\xEF\xBB\xBF[]", "\xEF\xBB[]", "\xEF\xBB\xBF"})
        EXPECT_FALSE(JSONDocument::parse(text)) << text;
    EXPECT_FALSE(JSONDocument::parse({"[]\0", 3}));
    EXPECT_FALSE(JSONDocument::parse(nested(513)));
}

TEST(JSONDocumentTest, KeepsTheFirstOfManyKeys) {
    for (const int count : {7, 8, 100'000}) {
        std::string text = "{", kept = "{";
        for (int i = 0; i < count; ++i) {
            const std::string key = "\"\\u0030" + std::to_string(i) + "\":";
            text += key + "[{}]," + key + "{\"x\":[1]},";
            kept += "\"0" + std::to_string(i) + "\":[{}],";
        }
        EXPECT_TRUE(rewritten(text + "\"00\":1}") + "," == kept.replace(kept.size() - 1, 1, "},")) << count;
    }
}

}  // namespace quorvantis
