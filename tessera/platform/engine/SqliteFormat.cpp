#include "tessera/platform/engine/SqliteFormat.h"

#include <algorithm>

namespace Platform {
namespace {

constexpr std::size_t headerBytes = 100;
constexpr std::string_view magic{"SQLite format 3\0", 16};
constexpr std::uint32_t applicationId = 0x54534552;
constexpr std::uint32_t formatVersion = 2;

/// Where SQLite's header has its numbers, high byte first.
constexpr std::size_t atPageSize = 16;
constexpr std::size_t atWriteVersion = 18;
constexpr std::size_t atReadVersion = 19;
constexpr std::size_t atChangeCounter = 24;
constexpr std::size_t atPageCount = 28;
constexpr std::size_t atUserVersion = 60;
constexpr std::size_t atApplicationId = 68;
constexpr std::size_t atPageCountValidFor = 92;

/// What both versions say of a file with a write-ahead log.
constexpr std::uint64_t writeAheadLog = 2;

constexpr const char* tables = R"(
BEGIN;
CREATE TABLE store (
    id INTEGER PRIMARY KEY CHECK (id = 1),
    next_id INTEGER NOT NULL,
    last_change INTEGER NOT NULL,
    locale TEXT NOT NULL,
    collation TEXT NOT NULL
) STRICT;
CREATE TABLE database (
    id INTEGER PRIMARY KEY,
    name BLOB NOT NULL,
    folded BLOB NOT NULL UNIQUE,
    type INTEGER NOT NULL,
    declared BLOB NOT NULL,
    records INTEGER NOT NULL,
    bytes INTEGER NOT NULL,
    modified INTEGER NOT NULL,
    version INTEGER NOT NULL
) STRICT;
CREATE TABLE sort_order (
    id INTEGER PRIMARY KEY AUTOINCREMENT,
    database INTEGER NOT NULL,
    property INTEGER NOT NULL,
    flags INTEGER NOT NULL,
    version INTEGER NOT NULL,
    UNIQUE (database, property, flags)
) STRICT;
CREATE TABLE record (
    id INTEGER PRIMARY KEY,
    data BLOB NOT NULL
) STRICT;
CREATE TABLE sort_key (
    sort_order INTEGER NOT NULL,
    key BLOB NOT NULL,
    record INTEGER NOT NULL,
    PRIMARY KEY (sort_order, key, record)
) STRICT, WITHOUT ROWID;
CREATE TABLE change (
    seq INTEGER PRIMARY KEY,
    database INTEGER NOT NULL,
    record INTEGER NOT NULL,
    kind INTEGER NOT NULL,
    origin INTEGER NOT NULL,
    time INTEGER NOT NULL
) STRICT;
)";

/// Since version 2.
constexpr const char* numberTable = R"(
CREATE TABLE number (
    number TEXT NOT NULL,
    record INTEGER NOT NULL,
    PRIMARY KEY (number, record)
) STRICT, WITHOUT ROWID;
)";

void addNumberTable(SqliteConnection& connection) {
    connection.run(numberTable);
    connection.run(("PRAGMA user_version = " + std::to_string(formatVersion)).c_str());
}

std::uint64_t versionOf(SqliteConnection& connection) {
    SqliteQuery version(connection, Sql::formatVersion);
    return version.step() ? version.natural(0) : 0;
}

bool hasLog(const std::filesystem::path& file) {
    std::filesystem::path log = file;
    log += "-wal";
    std::error_code ignored;
    return std::filesystem::exists(log, ignored) && std::filesystem::file_size(log, ignored) > 0;
}

/// Whether the file ends before the page that its header calls the last. A log beside it may hold the rest.
bool cutShort(SqliteConnection& connection, std::string_view header) {
    if (bigEndian(header, atChangeCounter, 4) != bigEndian(header, atPageCountValidFor, 4)) return false;
    const std::uint64_t written = bigEndian(header, atPageSize, 2);
    const std::uint64_t pageSize = written == 1 ? 65'536 : written;
    const std::uint64_t needed = pageSize * bigEndian(header, atPageCount, 4);
    return connection.fileSize() < needed && !hasLog(connection.file());
}

SqliteFailure madeByNewer(const SqliteConnection& connection) {
    return connection.failure(ERROR_REVISION_MISMATCH, "it is a store of a newer version of Tessera");
}

/// Where a newer program has changed the format of a store just now, or was killed upon it, only the log says so. That
/// is then left to those whose it is.
void checkLoggedVersion(SqliteConnection& connection) {
    connection.leaveLog(true);
    if (versionOf(connection) > formatVersion) throw madeByNewer(connection);
    connection.leaveLog(false);
}

}  // namespace

std::uint64_t bigEndian(std::string_view bytes, std::size_t at, std::size_t width) {
    if (at > bytes.size() || bytes.size() - at < width) return 0;
    std::uint64_t value = 0;
    for (const char byte : bytes.substr(at, width))
        value = value << 8 | static_cast<BYTE>(byte);
    return value;
}

void checkStoreFile(SqliteConnection& connection) {
    const std::string header = connection.read(0, headerBytes);
    if (!header.starts_with(magic)) throw connection.failure(ERROR_BAD_FORMAT, "it is not a Tessera store");
    if (header.size() < headerBytes) throw connection.damage();
    if (bigEndian(header, atApplicationId, 4) != applicationId) {
        throw connection.failure(ERROR_BAD_FORMAT, "it is not a Tessera store");
    }
    const std::uint64_t version = bigEndian(header, atUserVersion, 4);
    if (version > formatVersion) throw madeByNewer(connection);
    const bool logged =
        bigEndian(header, atWriteVersion, 1) == writeAheadLog && bigEndian(header, atReadVersion, 1) == writeAheadLog;
    if (version == 0 || !logged || cutShort(connection, header)) throw connection.damage();
    if (hasLog(connection.file())) checkLoggedVersion(connection);
}

void createTables(SqliteConnection& connection, const SortKeys& keys, const std::string& locale) {
    // Whoever publishes the file makes it durable as a whole.
    connection.run(
        "PRAGMA page_size = 4096; PRAGMA auto_vacuum = NONE; PRAGMA journal_mode = WAL; PRAGMA synchronous = OFF");
    connection.run(tables);
    connection.run(("PRAGMA application_id = " + std::to_string(applicationId)).c_str());
    addNumberTable(connection);
    runSql(connection, Sql::insertStore, locale, keys.version());
    runSql(connection, Sql::commit);
}

bool hasNumberTable(SqliteConnection& connection) {
    return versionOf(connection) >= formatVersion;
}

bool upgradeTables(SqliteConnection& connection) {
    const bool lacking = !hasNumberTable(connection);
    if (lacking) addNumberTable(connection);
    return lacking;
}

void configure(SqliteConnection& connection, const StoreOptions& options) {
    connection.run(options.fullDurability ? "PRAGMA synchronous = FULL" : "PRAGMA synchronous = NORMAL");
    connection.run(
        "PRAGMA cache_size = -16384;"
        "PRAGMA temp_store = MEMORY;"
        "PRAGMA secure_delete = FAST;"
        "PRAGMA cell_size_check = ON;"
        "PRAGMA trusted_schema = OFF");
}

void configureToLook(SqliteConnection& connection) {
    configure(connection, {});
    connection.run("PRAGMA query_only = ON");
    // Without a log of another's the last to leave clears up behind itself, as always.
    if (hasLog(connection.file())) connection.leaveLog(true);
}

}  // namespace Platform
