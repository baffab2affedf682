#include "tessera/platform/engine/SqliteCounters.h"

#include <limits>

#include "tessera/platform/engine/ContactNumbers.h"
#include "tessera/platform/engine/StoreRules.h"

namespace Platform {
namespace {

constexpr std::size_t packedOrderBytes = 8;

std::uint32_t littleEndian(std::string_view bytes) {
    std::uint32_t value = 0;
    for (std::size_t i = sizeof value; i-- > 0;)
        value = value << 8 | static_cast<BYTE>(bytes[i]);
    return value;
}

void append(std::string& bytes, std::uint32_t number) {
    for (std::size_t i = 0; i < sizeof number; ++i)
        bytes.push_back(static_cast<char>(static_cast<BYTE>(number >> 8 * i)));
}

}  // namespace

std::optional<std::uint64_t> DatabaseState::versionOf(OrderId order) const {
    if (isCreationOrder(order)) return version;
    for (const KeptOrder& kept : orders) {
        if (kept.id == order) return version + kept.moves;
    }
    return std::nullopt;
}

std::uint64_t SqliteCounters::dataVersion() {
    const auto header = connection_.logHeader();  // before the version: what is committed in between changes it
    if (header && header == dataVersionAt_) return dataVersion_;
    SqliteQuery query(connection_, Sql::dataVersion);
    query.step();
    dataVersion_ = query.natural(0);
    // A transaction that reads may show less than the header tells of.
    if (connection_.inTransaction() && !connection_.holdsWriteLock()) {
        dataVersionAt_.reset();
    } else {
        dataVersionAt_ = header;
    }
    return dataVersion_;
}

void SqliteCounters::refresh() {
    const std::uint64_t version = dataVersion();
    if (version != knownAt_) forget();
    knownAt_ = version;
}

void SqliteCounters::forget() {
    storeKnown_ = false;
    databases_.clear();
}

StoreState& SqliteCounters::store() {
    if (storeKnown_) return store_;
    SqliteQuery row(connection_, Sql::readStore);
    if (!row.step()) throw connection_.damage();
    store_ = {row.natural(0), row.natural(1), std::string(row.bytes(2)), std::string(row.bytes(3)), false};
    // A log of so many changes there cannot be; who follows it would reckon beyond the largest number, and go on for
    // ever.
    constexpr std::uint64_t mostChanges = std::numeric_limits<std::int64_t>::max();
    if (store_.nextId == 0 || store_.lastChange > mostChanges) throw connection_.damage();
    storeKnown_ = true;
    return store_;
}

DatabaseState* SqliteCounters::find(CEOID database) {
    if (const auto known = databases_.find(database); known != databases_.end()) return &known->second;
    SqliteQuery row(connection_, Sql::readDatabase, database);
    if (!row.step()) return nullptr;
    DatabaseState state;
    load(database, row, state);
    return &databases_.emplace(database, std::move(state)).first->second;
}

void SqliteCounters::load(CEOID database, SqliteQuery& row, DatabaseState& state) {
    state.info.id = database;
    state.info.name = unpackedText(row.bytes(0));
    state.info.type = row.dword(1);
    state.keepsNumbers = keepsNumbers(state.info.name);
    state.info.declaredOrders = unpackOrders(row.bytes(2));
    state.info.records = row.dword(3);
    state.info.bytes = row.natural(4);
    state.info.modified = row.natural(5);
    state.version = row.natural(6);
    // Each record has an identifier of its own. Who counts more is damaged, and would be walked for ever.
    if (row.natural(3) >= store().nextId) throw connection_.damage();
    SqliteQuery orders(connection_, Sql::ordersOfDatabase, database);
    while (orders.step()) {
        state.orders.push_back({orders.integer(0), {orders.dword(1), orders.dword(2)}, orders.natural(3), false});
    }
}

bool SqliteCounters::write() {
    if (!storeKnown_ || !store_.unwritten) return false;
    runSql(connection_, Sql::writeStore, store_.nextId, store_.lastChange);
    store_.unwritten = false;
    for (auto& [id, state] : databases_) {
        if (state.unwritten) writeDatabase(state);
    }
    return true;
}

void SqliteCounters::writeDatabase(DatabaseState& state) {
    runSql(connection_, Sql::writeDatabase, state.info.records, state.info.bytes, state.info.modified, state.version,
           state.info.id);
    for (KeptOrder& order : state.orders) {
        if (order.unwritten) runSql(connection_, Sql::writeOrder, order.moves, order.id);
        order.unwritten = false;
    }
    state.unwritten = false;
}

std::string packOrders(std::span<const SortOrder> orders) {
    std::string packed;
    for (const SortOrder& order : orders) {
        append(packed, order.property);
        append(packed, order.flags);
    }
    return packed;
}

std::vector<SortOrder> unpackOrders(std::string_view packed) {
    std::vector<SortOrder> orders;
    for (; packed.size() >= packedOrderBytes; packed.remove_prefix(packedOrderBytes)) {
        orders.push_back({littleEndian(packed), littleEndian(packed.substr(4))});
    }
    return orders;
}

}  // namespace Platform
