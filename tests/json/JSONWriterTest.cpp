#include "json/JSONWriter.h"

#include <algorithm>
#include <gtest/gtest.h>

#include "json/CodingErrors.h"
#include "json/JSONDocument.h"

namespace quorvantis {

static std::string written(std::string_view text, Slashes slashes = Slashes::escaped) {
    JSONWriter writer(slashes);
    writer.value(text);
    return writer.take();
}

TEST(JSONWriterTest, EscapesWhatItMust) {
    EXPECT_EQ(written({"\0\x01\b\t\n\v\f\r\x1f\x7f", 10}),
              "\"\\u0000\\u0001\\b\\t\\n\\u000b\\f\\r\\u001f\x7f\"");
    EXPECT_EQ(written("\"\\/é\u2028😀"), "\"\\\"\\\\\\/é\u2028😀\"");
    EXPECT_EQ(written("a/b/", Slashes::bare), R"("a/b/")");
    JSONWriter writer(Slashes::escaped);
    writer.object("a/", JSONText{R"({"b":"/\"/"})"}, "c", 1);
    EXPECT_EQ(writer.take(), R"({"a\/":{"b":"\/\"\/"},"c":1})");
}

TEST(JSONWriterTest, EscapesAtEveryPlaceOfAString) {
    const std::string_view pieces[] = {{"\0", 1}, "\x1f", " ", "\"", "\\", "/", "a", "\x7f", "é", "€"};
    for (const std::size_t start :
         {0u, 1u, 6u, 7u, 8u, 9u, 13u, 14u, 15u, 16u, 505u, 506u, 511u, 512u, 1023u})
        for (const auto first : pieces)
            for (const auto second : pieces) {
                const std::string text = std::string(start, '!').append(first).append(second) + "\n and more";
                const auto slashes = static_cast<std::size_t>(std::count(text.begin(), text.end(), '/'));
                EXPECT_EQ(JSONDocument::parse(written(text)).value().root().string(), text);
                EXPECT_EQ(written(text).size(), written(text, Slashes::bare).size() + slashes);
            }
}

TEST(JSONWriterTest, RefusesTextThatIsNotUTF8) {
    for (const auto text : {"\xff", "a\xc3", "\xed\xa0\x80"})
        EXPECT_THROW(written(text), EncodingError) << text;
}

TEST(JSONWriterTest, RefusesToNestTooDeeply) {
    for (const unsigned enclosing : {0u, 2u})
        for (const unsigned depth : {512u, 513u}) {
            JSONWriter writer(Slashes::escaped, enclosing);
            for (auto i = enclosing; i < depth; ++i) writer.beginArray();
            for (auto i = enclosing; i < depth; ++i) writer.endArray();
            if (depth == 513)
                EXPECT_THROW(writer.take(), EncodingError);
            else
                EXPECT_EQ(writer.take().size(), 2 * (depth - enclosing));
        }
}

}  // namespace quorvantis
