#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace benchmarks {

class SqlDatabase;

/// A prepared statement; prepared when it is first used. The texts that it is given must live until its rows are read.
class SqlStatement {
public:
    SqlStatement(SqlDatabase& database, const char* sql) : database_(database), sql_(sql) {}
    ~SqlStatement();
    SqlStatement(const SqlStatement&) = delete;
    SqlStatement& operator=(const SqlStatement&) = delete;

    /// Runs a statement that has no rows.
    template <class... Values>
    void run(const Values&... values) {
        ask(values...);
        while (next()) {
        }
    }
    /// Begins; each `next` is then a row, until there is none.
    template <class... Values>
    void ask(const Values&... values) {
        reset();
        int index = 0;
        (bind(++index, values), ...);
    }
    /// The statement is done with after the last row; who stops before that calls `reset`.
    bool next();
    void reset();

    std::int64_t number(int column) const;
    double real(int column) const;
    std::u16string text(int column) const;

private:
    void bind(int index, std::int64_t value);
    void bind(int index, int value) { bind(index, std::int64_t{value}); }
    void bind(int index, std::u16string_view value);
    void bind(int index, const std::u16string& value) { bind(index, std::u16string_view(value)); }

    SqlDatabase& database_;
    const char* sql_;
    sqlite3_stmt* statement_ = nullptr;
};

/// SQLite as one would use it by hand, as durable as the phone book. Whatever fails is thrown.
class SqlDatabase {
public:
    explicit SqlDatabase(const std::string& file);
    SqlDatabase(const SqlDatabase&) = delete;
    SqlDatabase& operator=(const SqlDatabase&) = delete;

    void run(const char* statements);
    std::int64_t lastInserted() const;
    sqlite3* get() const { return database_.get(); }

private:
    friend class SqlTransaction;

    struct Close {
        void operator()(sqlite3* database) const;
    };
    std::unique_ptr<sqlite3, Close> database_;
    SqlStatement begin_;
    SqlStatement commit_;
    SqlStatement rollBack_;
};

/// A transaction, of which nothing is kept unless it is committed.
class SqlTransaction {
public:
    explicit SqlTransaction(SqlDatabase& database) : database_(database) { database_.begin_.run(); }
    ~SqlTransaction() {
        if (!committed_) database_.rollBack_.run();
    }
    SqlTransaction(const SqlTransaction&) = delete;
    SqlTransaction& operator=(const SqlTransaction&) = delete;

    void commit() {
        database_.commit_.run();
        committed_ = true;
    }

private:
    SqlDatabase& database_;
    bool committed_ = false;
};

}  // namespace benchmarks
