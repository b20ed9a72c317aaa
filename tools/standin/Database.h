#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <sqlite3.h>
#include <string>
#include <string_view>
#include <unordered_map>

#include "json/Date.h"
#include "json/UUID.h"

namespace quorvantis::standin {

/// The rows that a statement returns. The first is current after `next`.
class Rows {
  public:
    explicit Rows(sqlite3_stmt* statement) : statement_(statement) {}
    Rows(const Rows&) = delete;
    Rows& operator=(const Rows&) = delete;
    ~Rows() { sqlite3_reset(statement_); }

    /// Goes to the next row. Returns false after the last. Throws std::runtime_error.
    bool next();

    // Columns of the current row, counted from 0.

    std::int64_t integer(int column) const { return sqlite3_column_int64(statement_, column); }
    std::string_view text(int column) const;
    void read(int column, std::int64_t& value) const { value = integer(column); }
    void read(int column, bool& value) const { value = integer(column) != 0; }
    void read(int column, std::string& value) const { value = text(column); }
    void read(int column, Date& value) const { value = {sqlite3_column_double(statement_, column)}; }
    void read(int column, UUID& value) const { value = UUID::parse(text(column)).value_or(UUID()); }
    template <class T>
    void read(int column, std::optional<T>& value) const {
        value.reset();
        if (sqlite3_column_type(statement_, column) != SQLITE_NULL) read(column, value.emplace());
    }

  private:
    sqlite3_stmt* statement_;
};

/// An SQLite database that its owner alone can read. What fails throws std::runtime_error, with the path.
class Database {
  public:
    /// Opens the database, and makes it by the schema when it is missing. A database of another version of
    /// the schema is refused. Other processes may use it at the same time; to wait for them longer than a
    /// minute is a failure.
    Database(const std::string& path, const std::string& schema, int version);

    const std::string& path() const { return path_; }

    /// Runs a statement with the values in place of its question marks. A statement that returns no rows is
    /// done when this returns. Statements are prepared once; the same may not run twice at a time.
    template <class... Values>
    Rows run(const std::string& sql, const Values&... values) {
        sqlite3_stmt* const statement = prepared(sql);
        int place = 0;
        (bind(statement, ++place, values), ...);
        return started(statement);
    }

    /// Runs the function in a transaction, which is undone if the function throws. One that returned
    /// survives the loss of power.
    void inTransaction(const std::function<void()>& work);

    std::int64_t lastNumber() const { return sqlite3_last_insert_rowid(connection_.get()); }
    /// The rows that the last statement changed.
    int changes() const { return sqlite3_changes(connection_.get()); }

  private:
    struct Close {
        void operator()(sqlite3* connection) const { sqlite3_close_v2(connection); }
        void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
    };

    void open();
    void execute(const std::string& sql);
    void prepareTables(const std::string& schema, int version);
    sqlite3_stmt* prepared(const std::string& sql);
    Rows started(sqlite3_stmt* statement);

    static void bind(sqlite3_stmt* s, int place, std::int64_t value) { sqlite3_bind_int64(s, place, value); }
    static void bind(sqlite3_stmt* s, int place, bool value) { sqlite3_bind_int(s, place, value); }
    static void bind(sqlite3_stmt* s, int place, std::string_view value) {
        sqlite3_bind_text64(s, place, value.data(), value.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
    }
    static void bind(sqlite3_stmt* s, int place, const std::string& value) {
        bind(s, place, std::string_view(value));
    }
    static void bind(sqlite3_stmt* s, int place, Date value) {
        sqlite3_bind_double(s, place, value.secondsSinceReferenceDate);
    }
    static void bind(sqlite3_stmt* s, int place, const UUID& value) { bind(s, place, value.upperCaseText()); }
    template <class T>
    static void bind(sqlite3_stmt* s, int place, const std::optional<T>& value) {
        value ? bind(s, place, *value) : static_cast<void>(sqlite3_bind_null(s, place));
    }

    std::string path_;
    std::unique_ptr<sqlite3, Close> connection_;
    std::unordered_map<std::string, std::unique_ptr<sqlite3_stmt, Close>> statements_;
};

}  // namespace quorvantis::standin
