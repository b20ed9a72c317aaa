#pragma once

#include <algorithm>
#include <cmath>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "CodingErrors.h"
#include "Date.h"
#include "JSON.h"
#include "JSONDocument.h"
#include "JSONWriter.h"
#include "NumberText.h"
#include "UUID.h"

namespace quorvantis {

// A record is an aggregate whose static `fields()` returns a tuple with one `Field` per member, in
// declaration order:
//
//     struct Point {
//         std::int64_t x = 0;
//         std::optional<std::string> label;
//         static constexpr auto fields() {
//             return std::tuple(Field("x", &Point::x), Field("label", &Point::label));
//         }
//     };
//
// Both decoding and encoding iterate over that tuple. A member is required unless it is a std::optional: an
// empty optional is not written, and a missing or null key is read as empty. Unknown keys are ignored.

/// A member of a record, and its JSON key, which equals the member's name.
template <class R, class T>
struct Field {
    constexpr Field(std::string_view key, T R::*pointer) : name(key), member(pointer) {}
    std::string_view name;
    T R::*member;
};

template <class R>
concept Record = requires {
    R::fields();
};

/// Converts values of type T from and to JSON. `decode` is not called for null. It throws DecodingError;
/// `encode` throws EncodingError.
template <class T>
struct Coding;

template <>
struct Coding<bool> {
    static bool decode(JSON json, const CodingPath& path) { return required(json.boolean(), path); }
    static void encode(bool value, JSONWriter& writer) { writer.value(value); }
};

template <class Integer>
requires std::same_as<Integer, std::int64_t> || std::same_as<Integer, std::int32_t>
struct Coding<Integer> {
    static Integer decode(JSON json, const CodingPath& path) {
        const std::int64_t value = required(json.integer(), path);
        if (!std::in_range<Integer>(value)) throw DecodingError::mistyped(path);
        return static_cast<Integer>(value);
    }
    static void encode(Integer value, JSONWriter& writer) { writer.value(value); }
};

template <>
struct Coding<std::string> {
    static std::string decode(JSON json, const CodingPath& path) {
        return std::string(required(json.string(), path));
    }
    static void encode(const std::string& value, JSONWriter& writer) { writer.value(value); }
};

template <>
struct Coding<Date> {
    static Date decode(JSON json, const CodingPath& path) { return {required(json.number(), path)}; }
    static void encode(Date date, JSONWriter& writer) {
        if (!std::isfinite(date.secondsSinceReferenceDate)) throw EncodingError();
        writer.literal(shortestNumberText(date.secondsSinceReferenceDate));
    }
};

template <>
struct Coding<UUID> {
    static UUID decode(JSON json, const CodingPath& path) {
        return required(UUID::parse(required(json.string(), path)), path);
    }
    static void encode(const UUID& uuid, JSONWriter& writer) { writer.value(uuid.upperCaseText()); }
};

/// An enumeration is coded as a string. `caseNames(Enumeration)`, a function in the enumeration's namespace
/// that ignores its argument's value, returns the strings in the order of the enumerators.
template <class Enumeration>
requires std::is_enum_v<Enumeration>
struct Coding<Enumeration> {
    static Enumeration decode(JSON json, const CodingPath& path) {
        const auto names = caseNames(Enumeration());
        const auto name = std::find(names.begin(), names.end(), required(json.string(), path));
        if (name == names.end()) throw DecodingError::mistyped(path);
        return static_cast<Enumeration>(name - names.begin());
    }
    static void encode(Enumeration value, JSONWriter& writer) {
        writer.value(caseNames(value)[static_cast<std::size_t>(value)]);
    }
};

template <class Element>
struct Coding<std::vector<Element>> {
    static std::vector<Element> decode(JSON json, const CodingPath& path) {
        if (json.kind() != JSON::Kind::array) throw DecodingError::mistyped(path);
        std::vector<Element> elements;
        for (const JSON element : json.elements()) {
            const CodingPath elementPath{.parent = &path, .index = elements.size()};
            if (element.kind() == JSON::Kind::null) throw DecodingError::missing(elementPath);
            elements.push_back(Coding<Element>::decode(element, elementPath));
        }
        return elements;
    }
    static void encode(const std::vector<Element>& elements, JSONWriter& writer) {
        writer.beginArray();
        for (const Element& element : elements) Coding<Element>::encode(element, writer);
        writer.endArray();
    }
};

template <Record R>
struct Coding<R> {
    static R decode(JSON json, const CodingPath& path) {
        if (json.kind() != JSON::Kind::object) throw DecodingError::mistyped(path);
        R record;
        std::apply([&](const auto&... field) { (decodeField(record, field, json, path), ...); }, R::fields());
        return record;
    }
    static void encode(const R& record, JSONWriter& writer) {
        writer.beginObject();
        std::apply([&](const auto&... field) { (encodeField(record, field, writer), ...); }, R::fields());
        writer.endObject();
    }

  private:
    template <class T>
    static void decodeField(R& record, const Field<R, T>& field, JSON json, const CodingPath& path) {
        const CodingPath fieldPath{.parent = &path, .key = field.name};
        const JSON value = json[field.name];
        if (value.kind() == JSON::Kind::null) throw DecodingError::missing(fieldPath);
        record.*field.member = Coding<T>::decode(value, fieldPath);
    }
    template <class T>
    static void decodeField(R& record, const Field<R, std::optional<T>>& field, JSON json,
                            const CodingPath& path) {
        const JSON value = json[field.name];
        if (value.kind() == JSON::Kind::null) return;
        record.*field.member = Coding<T>::decode(value, {.parent = &path, .key = field.name});
    }
    template <class T>
    static void encodeField(const R& record, const Field<R, T>& field, JSONWriter& writer) {
        writer.key(field.name);
        Coding<T>::encode(record.*field.member, writer);
    }
    template <class T>
    static void encodeField(const R& record, const Field<R, std::optional<T>>& field, JSONWriter& writer) {
        if (!(record.*field.member)) return;
        writer.key(field.name);
        Coding<T>::encode(*(record.*field.member), writer);
    }
};

/// Decodes a record, or a vector of records, from JSON text. Throws DecodingError.
template <class T>
T decodedRecord(std::string_view text) {
    const CodingPath root;
    const JSONDocument document = required(JSONDocument::parse(text), root);
    return Coding<T>::decode(document.root(), root);
}

/// Encodes a record, or a vector of records, as compact JSON. Throws EncodingError for a date that is not
/// finite.
template <class T>
std::string encodedRecord(const T& value) {
    JSONWriter writer(Slashes::escaped);
    Coding<T>::encode(value, writer);
    return writer.take();
}

}  // namespace quorvantis
