#include "mcp/Payload.h"

#include <span>

#include "json/JSON.h"
#include "json/JSONWriter.h"
#include "json/NumberText.h"

namespace quorvantis::QuorvantisMCP {

void writePublicPayload(JSON source, std::span<const PayloadKey> keys, JSONWriter& writer) {
    writer.beginObject();
    for (const PayloadKey& key : keys) {
        const JSON value = source[key.source];
        const bool accepted = key.accepts(value);
        if (!accepted && key.defaultValue.empty()) continue;
        writer.key(key.name);
        accepted ? writer.value(value) : writer.literal(key.defaultValue);
    }
    writer.endObject();
}

bool isString(JSON value) {
    return value.kind() == JSON::Kind::string;
}

bool isNumber(JSON value) {
    const auto text = value.numberText();
    return text && isWithinDouble(*text);
}

bool isInteger(JSON value) {
    return value.integer().has_value();
}

bool isBoolean(JSON value) {
    return value.kind() == JSON::Kind::boolean;
}

bool isArrayOfStrings(JSON value) {
    return value.isArrayOf(JSON::Kind::string);
}

}  // namespace quorvantis::QuorvantisMCP
