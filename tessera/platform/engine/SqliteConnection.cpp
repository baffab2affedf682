#include "tessera/platform/engine/SqliteConnection.h"

#include <algorithm>
#include <system_error>
#include <thread>

#include <sqlite3.h>

#include "tessera/platform/port/ErrorText.h"
#include "tessera/platform/port/LockHolder.h"

namespace Platform {
namespace {

struct Trouble {
    int result;  ///< Of SQLite, primary.
    DWORD error;
    const char* sentence;
};

constexpr std::array troubles{
    Trouble{SQLITE_BUSY, ERROR_LOCK_VIOLATION, "another program is writing to it"},
    Trouble{SQLITE_LOCKED, ERROR_LOCK_VIOLATION, "another program is writing to it"},
    Trouble{SQLITE_PROTOCOL, ERROR_LOCK_VIOLATION, "too many programs use it at once"},
    Trouble{SQLITE_FULL, ERROR_DISK_FULL, "the disk is full"},
    Trouble{SQLITE_READONLY, ERROR_ACCESS_DENIED, "it may not be written"},
    Trouble{SQLITE_PERM, ERROR_ACCESS_DENIED, "it may not be used"},
    Trouble{SQLITE_AUTH, ERROR_ACCESS_DENIED, "it may not be used"},
    Trouble{SQLITE_CANTOPEN, ERROR_ACCESS_DENIED, "it cannot be opened"},
    Trouble{SQLITE_CORRUPT, ERROR_FILE_CORRUPT, "the store is damaged"},
    Trouble{SQLITE_NOTADB, ERROR_FILE_CORRUPT, "the store is damaged"},
    Trouble{SQLITE_CONSTRAINT, ERROR_FILE_CORRUPT, "the store is damaged"},
    Trouble{SQLITE_MISMATCH, ERROR_FILE_CORRUPT, "the store is damaged"},
    Trouble{SQLITE_ERROR, ERROR_FILE_CORRUPT, "the store is damaged"},
    Trouble{SQLITE_TOOBIG, ERROR_FILE_CORRUPT, "the store is damaged"},
    Trouble{SQLITE_NOMEM, ERROR_NOT_ENOUGH_MEMORY, "there is not enough memory"},
    Trouble{SQLITE_IOERR, ERROR_GEN_FAILURE, "the disk does not read or write it"},
};

/// How often a waiting writer looks whether its turn has come.
constexpr std::chrono::milliseconds lookEvery{1};

/// Where in the index of the write-ahead log a writer's lock is, as the description of its format, "WAL-Index
/// Locking", has it.
constexpr std::uint64_t atWriterLock = 120;

/// "10 s", or "250 ms" where seconds would not tell.
std::string spell(std::chrono::milliseconds time) {
    const auto count = time.count();
    return count % 1000 == 0 ? std::to_string(count / 1000) + " s" : std::to_string(count) + " ms";
}

}  // namespace

void SqliteConnection::Close::operator()(sqlite3* database) const {
    sqlite3_close_v2(database);
}

void SqliteConnection::Finalize::operator()(sqlite3_stmt* statement) const {
    sqlite3_finalize(statement);
}

SqliteConnection::SqliteConnection(const std::filesystem::path& file, std::chrono::milliseconds writerWait)
    : file_(file), writerWait_(writerWait) {
    const std::u8string name = file.u8string();
    sqlite3* opened = nullptr;
    const int result = sqlite3_open_v2(reinterpret_cast<const char*>(name.c_str()), &opened,
                                       SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_NOFOLLOW, nullptr);
    database_.reset(opened);
    check(result);
    check(sqlite3_extended_result_codes(opened, 1));
    check(sqlite3_busy_handler(opened, &SqliteConnection::waitForWriter, this));
}

// SQLite's own way of waiting looks ever more rarely, and so may never meet the moment between two
// units of a program that writes one after another.
int SqliteConnection::waitForWriter(void* connection, int attempts) {
    auto& self = *static_cast<SqliteConnection*>(connection);
    const auto now = std::chrono::steady_clock::now();
    if (attempts == 0) self.waitingSince_ = now;
    if (now - self.waitingSince_ >= self.writerWait_) return 0;
    std::this_thread::sleep_for(lookEvery);
    return 1;
}

void SqliteConnection::run(const char* statements) {
    check(sqlite3_exec(database_.get(), statements, nullptr, nullptr, nullptr));
}

bool SqliteConnection::inTransaction() const {
    return sqlite3_get_autocommit(database_.get()) == 0;
}

bool SqliteConnection::holdsWriteLock() const {
    return sqlite3_txn_state(database_.get(), "main") == SQLITE_TXN_WRITE;
}

std::optional<SqliteConnection::LogHeader> SqliteConnection::logHeader() {
    constexpr std::uint32_t knownVersion = 3'007'000;
    constexpr int indexBlockBytes = 32'768;
    sqlite3_file* file = nullptr;
    sqlite3_file_control(database_.get(), "main", SQLITE_FCNTL_FILE_POINTER, &file);
    if (file == nullptr || file->pMethods == nullptr || file->pMethods->iVersion < 2) return std::nullopt;
    volatile void* mapped = nullptr;
    const int result = file->pMethods->xShmMap(file, 0, indexBlockBytes, 0, &mapped);
    if (result != SQLITE_OK || mapped == nullptr) return std::nullopt;
    LogHeader header;
    std::copy_n(static_cast<volatile const std::uint32_t*>(mapped), header.size(), header.begin());
    return header.front() == knownVersion ? std::optional(header) : std::nullopt;
}

std::uint64_t SqliteConnection::rowsWritten() const {
    return static_cast<std::uint64_t>(sqlite3_changes64(database_.get()));
}

void SqliteConnection::rollBack() noexcept {
    if (!inTransaction()) return;
    try {
        runSql(*this, Sql::rollback);
    } catch (...) {  // the transaction has ended all the same
    }
}

std::string SqliteConnection::read(std::uint64_t offset, std::size_t bytes) {
    sqlite3_file* file = nullptr;
    check(sqlite3_file_control(database_.get(), "main", SQLITE_FCNTL_FILE_POINTER, &file));
    const std::uint64_t size = fileSize();
    std::string start(std::min<std::uint64_t>(bytes, size - std::min(offset, size)), '\0');
    if (start.empty()) return start;
    check(
        file->pMethods->xRead(file, start.data(), static_cast<int>(start.size()), static_cast<sqlite3_int64>(offset)));
    return start;
}

std::uint64_t SqliteConnection::fileSize() {
    sqlite3_file* file = nullptr;
    check(sqlite3_file_control(database_.get(), "main", SQLITE_FCNTL_FILE_POINTER, &file));
    sqlite3_int64 size = 0;
    check(file->pMethods->xFileSize(file, &size));
    return static_cast<std::uint64_t>(size);
}

void SqliteConnection::leaveLog(bool leaves) {
    check(sqlite3_db_config(database_.get(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, leaves ? 1 : 0, nullptr));
}

void SqliteConnection::copyTo(SqliteConnection& target) {
    constexpr int allPages = -1;
    sqlite3_backup* copying = sqlite3_backup_init(target.database_.get(), "main", database_.get(), "main");
    if (copying == nullptr) throw target.failureOf(sqlite3_errcode(target.database_.get()));
    const int result = sqlite3_backup_step(copying, allPages);
    const int finished = sqlite3_backup_finish(copying);
    if (result == SQLITE_FULL) throw target.failureOf(result);  // to be read takes no room
    if (result != SQLITE_DONE) throw failureOf(result);
    target.check(finished);
}

sqlite3_stmt* SqliteConnection::prepared(Sql statement) {
    auto& kept = statements_[static_cast<std::size_t>(statement)];
    if (!kept) {
        sqlite3_stmt* made = nullptr;
        check(sqlite3_prepare_v3(database_.get(), textOf(statement), -1, SQLITE_PREPARE_PERSISTENT, &made, nullptr));
        kept.reset(made);
    }
    return kept.get();
}

void SqliteConnection::check(int result) const {
    if (result != SQLITE_OK) throw failureOf(result);
}

SqliteFailure SqliteConnection::failureOf(int result) const {
    const int primary = result == SQLITE_IOERR_NOMEM ? SQLITE_NOMEM : result & 0xFF;
    const auto found = std::find_if(troubles.begin(), troubles.end(),
                                    [&](const Trouble& trouble) { return trouble.result == primary; });
    if (found == troubles.end()) return failure(ERROR_GEN_FAILURE, sqlite3_errstr(result));
    if (primary == SQLITE_CANTOPEN) return failure(found->error, found->sentence + systemReason());
    if (primary != SQLITE_BUSY) return failure(found->error, found->sentence);
    return failure(found->error, writerAtWork() + " is writing to it; gave up after " + spell(writerWait_));
}

std::string SqliteConnection::systemReason() const {
    const int error = sqlite3_system_errno(database_.get());
    return error == 0 ? "" : ": " + port::messageOf({error, std::system_category()});
}

std::string SqliteConnection::writerAtWork() const {
    const auto holder = port::lockHolder(file_.string() + "-shm", atWriterLock);
    if (!holder) return "another program";
    if (holder->self) return "another thread of this program";
    return "another program (" + holder->program + ", process " + std::to_string(holder->id) + ")";
}

SqliteFailure SqliteConnection::failure(DWORD error, std::string_view sentence) const {
    const std::u8string name = file_.u8string();
    return {error, std::string(name.begin(), name.end()).append(": ").append(sentence)};
}

SqliteFailure SqliteConnection::damage() const {
    return failureOf(SQLITE_CORRUPT);
}

SqliteQuery::~SqliteQuery() {
    sqlite3_reset(statement_);
    sqlite3_clear_bindings(statement_);
}

bool SqliteQuery::step() {
    const int result = sqlite3_step(statement_);
    if (result == SQLITE_ROW) return true;
    if (result == SQLITE_DONE) return false;
    throw connection_.failureOf(result);
}

std::int64_t SqliteQuery::integer(int column) const {
    return sqlite3_column_int64(statement_, column);
}

std::string_view SqliteQuery::bytes(int column) const {
    const void* start = sqlite3_column_blob(statement_, column);
    const int size = sqlite3_column_bytes(statement_, column);
    return {static_cast<const char*>(start), static_cast<std::size_t>(size)};
}

bool SqliteQuery::isNull(int column) const {
    return sqlite3_column_type(statement_, column) == SQLITE_NULL;
}

void SqliteQuery::bind(std::int64_t value) {
    connection_.check(sqlite3_bind_int64(statement_, ++bound_, value));
}

void SqliteQuery::bind(std::string_view value) {
    // A null pointer would bind NULL rather than no bytes.
    const char* start = value.data() == nullptr ? "" : value.data();
    connection_.check(sqlite3_bind_blob64(statement_, ++bound_, start, value.size(), SQLITE_STATIC));
}

}  // namespace Platform
