#pragma once

#include <span>
#include <string_view>

#include "support/JSON.h"
#include "support/JSONWriter.h"

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

inline bool isString(JSON value) {
    return value.kind() == JSON::Kind::string;
}
inline bool isNumber(JSON value) {
    return value.kind() == JSON::Kind::number;
}
inline bool isInteger(JSON value) {
    return value.integer().has_value();
}
inline bool isBoolean(JSON value) {
    return value.kind() == JSON::Kind::boolean;
}
inline bool isArrayOfStrings(JSON value) {
    return value.isArrayOf(JSON::Kind::string);
}

}  // namespace quorvantis::QuorvantisMCP
