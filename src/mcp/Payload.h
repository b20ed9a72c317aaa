#pragma once

#include <span>
#include <string_view>

#include "json/JSON.h"
#include "json/JSONWriter.h"

namespace quorvantis::QuorvantisMCP {

/// One key of a public payload: where its value comes from, and what it must be to count.
struct PayloadKey {
    std::string_view name;
    std::string_view source;
    bool (*fits)(JSON value);
    std::string_view whenMissing = {};  // JSON without slashes; empty: the key is left out
};

/// Writes the payload made from an object of the broker's, its values as they are. Its other keys are not
/// passed on.
void writePublicPayload(JSON source, std::span<const PayloadKey> keys, JSONWriter& writer);

// What a value must be to be copied.
bool isString(JSON value);
bool isNumber(JSON value);
bool isInteger(JSON value);
bool isBoolean(JSON value);
bool isArrayOfStrings(JSON value);

}  // namespace quorvantis::QuorvantisMCP
