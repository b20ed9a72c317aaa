#include "Database.h"

#include <cstddef>
#include <cstdint>
#include <errno.h>
#include <fcntl.h>
#include <functional>
#include <sqlite3.h>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>

#include "platform/Descriptors.h"
#include "support/Files.h"
#include "support/Paths.h"

namespace quorvantis::standin {

namespace {

using platform::Descriptor;

constexpr int patience = 60'000;  // milliseconds

[[noreturn]] void fail(const std::string& path, const std::string& reason) {
    throw std::runtime_error(path + ": " + reason + ".");
}

[[noreturn]] void fail(sqlite3* connection) {
    fail(sqlite3_db_filename(connection, "main"), sqlite3_errmsg(connection));
}

/// Makes the folder and the file, for their owner alone; SQLite gives its further files the same mode.
/// Returns a lock that others wait for.
Descriptor lockedFile(const std::string& path) {
    makeFolders(parentPath(path));
    chmod(parentPath(path).c_str(), 0700);
    const Descriptor file(open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    if (!file) throw FileError::system(errno);
    fchmod(file.get(), 0600);
    Descriptor folder(open(parentPath(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder || flock(folder.get(), LOCK_EX) != 0) throw FileError::system(errno);
    return folder;
}

}  // namespace

bool Rows::next() {
    const int result = sqlite3_step(statement_);
    if (result != SQLITE_ROW && result != SQLITE_DONE) fail(sqlite3_db_handle(statement_));
    return result == SQLITE_ROW;
}

std::string_view Rows::text(int column) const {
    const auto bytes = reinterpret_cast<const char*>(sqlite3_column_text(statement_, column));
    return bytes ? std::string_view(bytes, static_cast<std::size_t>(sqlite3_column_bytes(statement_, column)))
                 : std::string_view();
}

Database::Database(const std::string& path, const std::string& schema, int version) : path_(path) {
    try {
        const Descriptor lock = lockedFile(path);
        open();
        prepareTables(schema, version);
    } catch (const FileError& failure) {
        throw std::runtime_error(path + ": " + failure.what());
    }
}

void Database::open() {
    sqlite3* connection = nullptr;
    const int result = sqlite3_open_v2(path_.c_str(), &connection, SQLITE_OPEN_READWRITE, nullptr);
    connection_.reset(connection);
    if (result != SQLITE_OK) fail(path_, sqlite3_errstr(result));
    sqlite3_busy_timeout(connection, patience);
    execute(
        "pragma journal_mode = wal; pragma synchronous = full; pragma foreign_keys = on;"
        "pragma secure_delete = on; pragma journal_size_limit = 4194304");
}

void Database::prepareTables(const std::string& schema, int version) {
    inTransaction([&] {
        std::int64_t found = 0;
        {
            Rows rows = run("pragma user_version");
            if (rows.next()) found = rows.integer(0);
        }
        if (found == version) return;
        if (found != 0) fail(path_, "another version of this program wrote it");
        execute(schema);
        execute("pragma user_version = " + std::to_string(version));
    });
}

void Database::execute(const std::string& sql) {
    if (sqlite3_exec(connection_.get(), sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK)
        fail(connection_.get());
}

void Database::inTransaction(const std::function<void()>& work) {
    execute("begin immediate");
    try {
        work();
        execute("commit");
    } catch (...) {
        sqlite3_exec(connection_.get(), "rollback", nullptr, nullptr, nullptr);
        throw;
    }
}

sqlite3_stmt* Database::prepared(const std::string& sql) {
    auto& statement = statements_[sql];
    if (statement) return statement.get();
    sqlite3_stmt* made = nullptr;
    const int size = static_cast<int>(sql.size());
    if (sqlite3_prepare_v3(connection_.get(), sql.data(), size, SQLITE_PREPARE_PERSISTENT, &made, nullptr) !=
        SQLITE_OK)
        fail(connection_.get());
    statement.reset(made);
    return made;
}

Rows Database::started(sqlite3_stmt* statement) {
    if (sqlite3_column_count(statement) == 0) Rows(statement).next();
    return Rows(statement);
}

}  // namespace quorvantis::standin
