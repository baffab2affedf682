#pragma once

#include <filesystem>
#include <string>

#include <gtest/gtest.h>
#include <sqlite3.h>

namespace testing_support {

/// Opens the file with SQLite alone. Answers SQLite's result code.
inline int openSqlite(const std::filesystem::path& file, sqlite3*& database) {
    const std::u8string name = file.u8string();
    return sqlite3_open(reinterpret_cast<const char*>(name.c_str()), &database);
}

/// Does with SQL what no program would.
inline void runSql(const std::filesystem::path& file, const std::string& statements) {
    sqlite3* database = nullptr;
    ASSERT_EQ(openSqlite(file, database), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(database, statements.c_str(), nullptr, nullptr, nullptr), SQLITE_OK)
        << sqlite3_errmsg(database);
    sqlite3_close(database);
}

}  // namespace testing_support
