#pragma once

#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "tessera/platform/engine/RecordEngine.h"
#include "tessera/platform/engine/SqliteConnection.h"

namespace Platform {

/// An order that is kept, and how often an entry of it has moved: that entries come and go is the database's to count,
/// since they do so in all of its orders at once.
struct KeptOrder {
    OrderId id = 0;
    SortOrder order;
    std::uint64_t moves = 0;
    bool unwritten = false;
};

/// What a store knows of a database beside its records.
struct DatabaseState {
    DatabaseInfo info;
    std::uint64_t version = 0;  ///< Grows when a record comes or goes.
    std::vector<KeptOrder> orders;
    bool keepsNumbers = false;
    bool unwritten = false;

    /// What grows when an entry of the order comes, goes or moves; nothing when the database has no such order.
    std::optional<std::uint64_t> versionOf(OrderId order) const;
};

struct StoreState {
    std::uint64_t nextId = 1;
    std::uint64_t lastChange = 0;
    std::string locale;
    std::string collation;
    bool unwritten = false;
};

/// A connection's knowledge of the small rows that every write changes. It is kept from call to call
/// while nobody else commits, and written once, at the end of a unit.
class SqliteCounters {
public:
    explicit SqliteCounters(SqliteConnection& connection) : connection_(connection) {}

    /// Moves when another connection has committed.
    std::uint64_t dataVersion();
    /// Forgets what another connection may have changed.
    void refresh();
    void forget();

    StoreState& store();
    /// Null when there is no such database.
    DatabaseState* find(CEOID database);
    void remove(CEOID database) { databases_.erase(database); }

    /// Writes what has changed; tells whether anything had.
    bool write();

private:
    void load(CEOID database, SqliteQuery& row, DatabaseState& state);
    void writeDatabase(DatabaseState& state);

    SqliteConnection& connection_;
    std::uint64_t dataVersion_ = 0;
    std::optional<SqliteConnection::LogHeader> dataVersionAt_;  ///< dataVersion_ stands while this is the header.
    std::uint64_t knownAt_ = 0;
    bool storeKnown_ = false;
    StoreState store_;
    std::unordered_map<CEOID, DatabaseState> databases_;
};

/// Declared orders as a database's row has them: property and flags of each, 4 bytes, little-endian.
std::string packOrders(std::span<const SortOrder> orders);
std::vector<SortOrder> unpackOrders(std::string_view packed);

}  // namespace Platform
