// JSON: what is read is written, and read again the same, and so are its numbers.

#include "json/JSON.h"

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "json/JSONDocument.h"
#include "json/JSONRecord.h"
#include "json/JSONWriter.h"
#include "json/NumberText.h"
#include "support/UTF8.h"

using namespace quorvantis;

static void checkNumber(JSON json) {
    const auto number = json.number();
    assert(number.has_value() == isWithinDouble(*json.numberText()));
    if (number) assert(decodedRecord<Date>(encodedRecord(Date{*number})) == Date{*number});
    if (const auto integer = json.integer()) {
        assert(number == static_cast<double>(*integer));
        assert(integerFromNumberText(std::to_string(*integer)) == integer);
    }
}

/// Also checks the numbers.
static bool areSame(JSON one, JSON other) {
    if (one.numberText()) checkNumber(one);
    if (one.kind() != other.kind() || one.boolean() != other.boolean() || one.string() != other.string() ||
        one.numberText() != other.numberText())
        return false;
    auto element = other.elements().begin();
    for (const JSON mine : one.elements()) {
        if (element == other.elements().end() || !areSame(mine, *element)) return false;
        ++element;
    }
    auto member = other.members().begin();
    for (const auto& [key, mine] : one.members()) {
        if (member == other.members().end() || (*member).key != key || !areSame(mine, (*member).value))
            return false;
        ++member;
    }
    return element == other.elements().end() && member == other.members().end();
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto document = JSONDocument::parse(text);
    if (!document) return 0;
    assert(isValidUTF8(text));
    for (const auto slashes : {Slashes::bare, Slashes::escaped}) {
        JSONWriter writer(slashes);
        writer.value(document->root());
        const std::string written = writer.take();
        const auto again = JSONDocument::parse(written);
        assert(written.find('\n') == written.npos && again && areSame(document->root(), again->root()));
    }
    return 0;
}
