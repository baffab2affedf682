#include "benchmarks/Sql.h"

#include <stdexcept>

#include <sqlite3.h>

namespace benchmarks {

SqlDatabase::SqlDatabase(const std::string& file)
    : begin_(*this, "BEGIN IMMEDIATE"), commit_(*this, "COMMIT"), rollBack_(*this, "ROLLBACK") {
    sqlite3* opened = nullptr;
    const int result = sqlite3_open(file.c_str(), &opened);
    database_.reset(opened);
    if (result != SQLITE_OK) throw std::runtime_error(sqlite3_errmsg(opened));
    // Durable as the phone book is, and with as large a cache. Overwriting what is deleted, which some builds of
    // SQLite do of themselves, is not asked for.
    run("PRAGMA journal_mode=WAL; PRAGMA synchronous=FULL; PRAGMA cache_size=-16384; PRAGMA secure_delete=OFF");
}

void SqlDatabase::Close::operator()(sqlite3* database) const {
    sqlite3_close(database);
}

void SqlDatabase::run(const char* statements) {
    if (sqlite3_exec(get(), statements, nullptr, nullptr, nullptr) != SQLITE_OK) {
        throw std::runtime_error(sqlite3_errmsg(get()));
    }
}

std::int64_t SqlDatabase::lastInserted() const {
    return sqlite3_last_insert_rowid(get());
}

SqlStatement::~SqlStatement() {
    sqlite3_finalize(statement_);
}

void SqlStatement::reset() {
    if (statement_ != nullptr) {
        sqlite3_reset(statement_);
    } else if (sqlite3_prepare_v3(database_.get(), sql_, -1, SQLITE_PREPARE_PERSISTENT, &statement_, nullptr) !=
               SQLITE_OK) {
        throw std::runtime_error(sqlite3_errmsg(database_.get()));
    }
}

bool SqlStatement::next() {
    const int result = sqlite3_step(statement_);
    if (result == SQLITE_ROW) return true;
    sqlite3_reset(statement_);
    if (result != SQLITE_DONE) throw std::runtime_error(sqlite3_errmsg(database_.get()));
    return false;
}

std::int64_t SqlStatement::number(int column) const {
    return sqlite3_column_int64(statement_, column);
}

double SqlStatement::real(int column) const {
    return sqlite3_column_double(statement_, column);
}

std::u16string SqlStatement::text(int column) const {
    const auto* text = static_cast<const char16_t*>(sqlite3_column_text16(statement_, column));
    if (text == nullptr) return {};
    return {text, static_cast<std::size_t>(sqlite3_column_bytes16(statement_, column)) / sizeof(char16_t)};
}

void SqlStatement::bind(int index, std::int64_t value) {
    sqlite3_bind_int64(statement_, index, value);
}

void SqlStatement::bind(int index, std::u16string_view value) {
    sqlite3_bind_text16(statement_, index, value.data(), static_cast<int>(value.size() * sizeof(char16_t)),
                        SQLITE_STATIC);
}

}  // namespace benchmarks
