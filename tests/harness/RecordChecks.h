#pragma once

#include <gtest/gtest.h>

#include "json/JSONRecord.h"

namespace quorvantis::harness {

/// A place in a record's text, what to put there, and what the decoder then says: nothing, or the path of the
/// value with " missing" or " mistyped".
struct Change {
    std::string from, to, outcome;
};

template <class R>
std::string decodingOutcome(const std::string& text, const std::string& golden) {
    try {
        EXPECT_EQ(encodedRecord(decodedRecord<R>(text)), golden);
        return "";
    } catch (const DecodingError& error) {
        const bool isMissing = std::string_view(error.what()).find("missing") != std::string_view::npos;
        return error.path() + (isMissing ? " missing" : " mistyped");
    }
}

/// The text is read and written back byte for byte, and changed texts are read as the same record or refused.
template <class R>
void expectRecord(const std::string& golden, const std::vector<Change>& changes = {}) {
    EXPECT_EQ(decodingOutcome<R>(golden, golden), "");
    for (const Change& change : changes) {
        std::string text = golden;
        text.replace(text.find(change.from), change.from.size(), change.to);
        EXPECT_EQ(decodingOutcome<R>(text, golden), change.outcome) << change.to;
    }
}

}  // namespace quorvantis::harness
