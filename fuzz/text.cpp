// Text: repair, characters, lower case, image references, UUIDs.

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "imaging/ImageReferences.h"
#include "json/JSONDocument.h"
#include "json/JSONWriter.h"
#include "json/UUID.h"
#include "support/Characters.h"
#include "support/UTF8.h"

using namespace quorvantis;

static void checkCharacters(std::string_view text) {
    const std::size_t count = characterCount(text);
    for (std::size_t at = 1; at < text.size(); ++at) {
        const auto before = static_cast<std::uint8_t>(text[at - 1]),
                   after = static_cast<std::uint8_t>(text[at]);
        if ((after & 0xC0) == 0x80 || (before >= 0x80 && after >= 0x80)) continue;
        const std::size_t apart = characterCount(text.substr(0, at)) + characterCount(text.substr(at));
        assert(apart == (isCharacterBoundary(text, at) ? count : count + 1));
    }
}

static void checkLowerCase(std::string_view text) {
    const std::string lower = lowerCased(text);
    assert(isValidUTF8(lower) && lowerCased(lower) == lower && isBlank(lower) == isBlank(text));
}

static void checkReferences(std::string_view prompt) {
    std::size_t at = 0;
    for (const auto& reference : ImageReferences::inPrompt(prompt)) {
        at = prompt.find(reference, at);
        assert(at != prompt.npos);
        at += reference.size();
        const auto hash = ImageReferences::assetHash(reference);
        assert(hash == lowerCased(reference.substr(ImageReferences::prefix.size())));
    }
    if (ImageReferences::assetHash(prompt)) assert(ImageReferences::inPrompt(prompt).size() == 1);
}

static void checkUUID(std::string_view text) {
    const auto uuid = UUID::parse(text);
    if (!uuid) return;
    assert(uuid->lowerCaseText() == lowerCased(text) &&
           lowerCased(uuid->upperCaseText()) == lowerCased(text));
    assert(UUID::parse(uuid->upperCaseText()) == uuid);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const std::string text = repairedUTF8(bytes);
    assert(isValidUTF8(text) && isValidUTF8(bytes) == (text == bytes));
    const auto written = JSONDocument::parseOwned(jsonText(text).text);  // its parser has a check of its own
    assert(written && written->root().string() == text);
    checkCharacters(repairedUTF8(bytes.substr(0, 40)));  // takes the square of its size
    checkLowerCase(text);
    checkReferences(text);
    const auto hyphen = text.find('-');
    if (hyphen != text.npos && hyphen >= 8) checkUUID(std::string_view(text).substr(hyphen - 8, 36));
    return 0;
}
