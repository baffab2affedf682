#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "tessera/platform/base/Results.h"
#include "tessera/platform/engine/SqliteStatements.h"

struct sqlite3;
struct sqlite3_stmt;

namespace Platform {

/// Storage has failed. Thrown within the SQLite engine only; its calls answer the error.
struct SqliteFailure {
    DWORD error;
    std::string text;
};

/// One connection to a file of SQLite's, and its prepared statements. One thread.
class SqliteConnection {
public:
    /// Opens the file, which must exist and be named without symbolic links, without reading it.
    SqliteConnection(const std::filesystem::path& file, std::chrono::milliseconds writerWait);
    ~SqliteConnection() = default;
    SqliteConnection(const SqliteConnection&) = delete;
    SqliteConnection& operator=(const SqliteConnection&) = delete;

    /// Runs statements that answer nothing; for setting up, where nothing is run twice.
    void run(const char* statements);
    bool inTransaction() const;
    /// Whether no other connection can commit now.
    bool holdsWriteLock() const;
    /// The header of the index that all connections share of the write-ahead log. Every commit, whoever makes
    /// it, changes it: while it is equal nobody has committed. Reading it takes no lock and no call of the
    /// system. Nothing when there is none to be had, as before the first read. For its 48 bytes see the file
    /// format's description, "WAL-Index Header", which all versions of SQLite that share a file must agree on.
    using LogHeader = std::array<std::uint32_t, 12>;
    std::optional<LogHeader> logHeader();
    /// How many rows the last statement has written.
    std::uint64_t rowsWritten() const;
    /// Ends a transaction with nothing done; never fails.
    void rollBack() noexcept;

    /// Bytes of the file, fewer where it ends, and its size, read through SQLite and without touching anything else:
    /// a file of our own opened and closed beside it would take the process's locks on the store away.
    std::string read(std::uint64_t offset, std::size_t bytes);
    std::uint64_t fileSize();

    /// Whether what is in the log beside the file stays there when the connection ends.
    void leaveLog(bool leaves);
    /// Makes `target`, a file that nobody uses, a copy of this one as it is at one moment.
    void copyTo(SqliteConnection& target);

    const std::filesystem::path& file() const { return file_; }
    /// A failure with this file: the sentence is put behind its name.
    SqliteFailure failure(DWORD error, std::string_view sentence) const;
    /// What to say of a result code of SQLite's.
    SqliteFailure failureOf(int result) const;
    /// The failure of a store whose contents make no sense.
    SqliteFailure damage() const;

private:
    friend class SqliteQuery;

    struct Close {
        void operator()(sqlite3* database) const;
    };
    struct Finalize {
        void operator()(sqlite3_stmt* statement) const;
    };

    static int waitForWriter(void* connection, int attempts);
    /// What the system said of a file that SQLite could not open, behind a sentence of ours.
    std::string systemReason() const;
    std::string writerAtWork() const;
    sqlite3_stmt* prepared(Sql statement);
    void check(int result) const;

    std::filesystem::path file_;
    std::chrono::milliseconds writerWait_;
    std::chrono::steady_clock::time_point waitingSince_;
    std::unique_ptr<sqlite3, Close> database_;
    std::array<std::unique_ptr<sqlite3_stmt, Finalize>, static_cast<std::size_t>(Sql::count)> statements_;
};

/// One use of a prepared statement: its arguments bound, its rows stepped through, reset at the end.
/// Texts are bound as borrowed and must outlive it. A statement serves one query at a time.
class SqliteQuery {
public:
    template <typename... Arguments>
    SqliteQuery(SqliteConnection& connection, Sql statement, const Arguments&... arguments)
        : connection_(connection), statement_(connection.prepared(statement)) {
        (bind(arguments), ...);
    }
    ~SqliteQuery();
    SqliteQuery(const SqliteQuery&) = delete;
    SqliteQuery& operator=(const SqliteQuery&) = delete;

    /// Moves to the next row; false after the last.
    bool step();
    /// Runs a statement that has no rows to look at.
    void run() { step(); }

    std::int64_t integer(int column) const;
    std::uint64_t natural(int column) const { return static_cast<std::uint64_t>(integer(column)); }
    DWORD dword(int column) const { return static_cast<DWORD>(integer(column)); }
    /// Good until the next step.
    std::string_view bytes(int column) const;
    bool isNull(int column) const;

private:
    void bind(std::int64_t value);
    void bind(std::uint64_t value) { bind(static_cast<std::int64_t>(value)); }
    void bind(std::uint32_t value) { bind(std::int64_t{value}); }
    void bind(std::string_view value);
    void bind(const std::string& value) { bind(std::string_view(value)); }

    SqliteConnection& connection_;
    sqlite3_stmt* statement_;
    int bound_ = 0;
};

/// Runs a prepared statement that answers nothing.
template <typename... Arguments>
void runSql(SqliteConnection& connection, Sql statement, const Arguments&... arguments) {
    SqliteQuery(connection, statement, arguments...).run();
}

/// Holds what the statements of one call see still. Within a transaction they do so anyhow.
class SqliteSnapshot {
public:
    explicit SqliteSnapshot(SqliteConnection& connection) : connection_(connection), own_(!connection.inTransaction()) {
        if (own_) runSql(connection_, Sql::beginReading);
    }
    ~SqliteSnapshot() {
        if (own_) connection_.rollBack();
    }
    SqliteSnapshot(const SqliteSnapshot&) = delete;
    SqliteSnapshot& operator=(const SqliteSnapshot&) = delete;

private:
    SqliteConnection& connection_;
    bool own_;
};

}  // namespace Platform
