#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>

#include "Database.h"
#include "json/Date.h"
#include "json/JSONRecord.h"
#include "json/UUID.h"

namespace quorvantis::standin {

// A record's fields as columns of a table. Those that are records or arrays have tables of their own.

template <class T>
struct Plain
    : std::bool_constant<std::is_same_v<T, std::string> || std::is_same_v<T, std::int64_t> ||
                         std::is_same_v<T, bool> || std::is_same_v<T, Date> || std::is_same_v<T, UUID>> {};
template <class T>
struct Plain<std::optional<T>> : Plain<T> {};

/// Calls the function with the name and the member of each field that is a column.
template <class R, class Visit>
void forEachColumn(R& record, const Visit& visit) {
    const auto visitField = [&]<class Owner, class T>(const Field<Owner, T>& field) {
        if constexpr (Plain<T>::value) visit(field.name, record.*field.member);
    };
    std::apply([&](const auto&... field) { (visitField(field), ...); }, std::remove_const_t<R>::fields());
}

/// The names of the columns, as in "id", "index".
template <class R>
std::string columnNames() {
    std::string names;
    R record;
    forEachColumn(record, [&](std::string_view name, const auto&) {
        names.append(names.empty() ? "\"" : ", \"").append(name).append("\"");
    });
    return names;
}

/// References to the members that are columns, as a tuple.
template <class R>
auto columnValues(const R& record) {
    const auto value = [&]<class Owner, class T>(const Field<Owner, T>& field) {
        if constexpr (Plain<T>::value)
            return std::tuple<const T&>(record.*field.member);
        else
            return std::tuple<>();
    };
    return std::apply([&](const auto&... field) { return std::tuple_cat(value(field)...); }, R::fields());
}

/// Inserts a row with the columns of the records, after `first`: the table's other columns, as in "item, ",
/// and their values.
template <class... Values, class... Records>
void insertRow(Database& database, const std::string& table, const std::string& first,
               const std::tuple<Values...>& values, const Records&... records) {
    const auto all = std::tuple_cat(values, columnValues(records)...);
    std::string names = first, marks = "?";
    for (const std::string& more : {columnNames<Records>()...}) names += more + ", ";
    names.resize(names.size() - 2);
    for (std::size_t i = 1; i < std::tuple_size_v<decltype(all)>; ++i) marks += ", ?";
    const std::string sql = "insert into " + table + " (" + names + ") values (" + marks + ")";
    std::apply([&](const auto&... value) { database.run(sql, value...); }, all);
}

/// Reads the columns from `column` on. Returns the next.
template <class R>
int readColumns(const Rows& rows, int column, R& record) {
    forEachColumn(record, [&](std::string_view, auto& member) { rows.read(column++, member); });
    return column;
}

}  // namespace quorvantis::standin
