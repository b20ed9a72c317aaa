#pragma once

#include <span>
#include <string_view>

#include "json/JSON.h"
#include "json/JSONWriter.h"

namespace quorvantis::QuorvantisMCP {

/// One member of a public payload.
struct PayloadKey {
    std::string_view name;
    std::string_view source;             // the key in the broker's object
    bool (*accepts)(JSON value);         // whether the broker's value is copied
    std::string_view defaultValue = {};  // used otherwise, JSON without slashes; empty to omit the member
};

/// Writes the payload of an object from the broker's reply. Values are copied unchanged; keys that are not
/// listed are dropped.
void writePublicPayload(JSON source, std::span<const PayloadKey> keys, JSONWriter& writer);

// For PayloadKey::accepts.
bool isString(JSON value);
bool isNumber(JSON value);  // within the range of double: strict clients refuse others
bool isInteger(JSON value);
bool isBoolean(JSON value);
bool isArrayOfStrings(JSON value);

}  // namespace quorvantis::QuorvantisMCP
