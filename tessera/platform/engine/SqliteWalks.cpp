#include <algorithm>
#include <limits>

#include "tessera/platform/engine/SqliteEngine.h"
#include "tessera/platform/engine/SqliteFormat.h"
#include "tessera/platform/engine/StoreRules.h"

// Orders, and walks along them; the change log.

namespace Platform {
namespace {

/// Before and after every key: a key starts with a byte between.
constexpr std::string_view beforeAllKeys;
constexpr std::string_view afterAllKeys = "\xFF";

/// Up to so many equal records are looked up one by one to see which comes first along another order;
/// more are sooner found by walking that order.
constexpr std::size_t fewEqualRecords = 64;
constexpr std::uint64_t noLimit = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());

Sql inDirection(Direction direction, Sql forward, Sql backward) {
    return direction == Direction::forward ? forward : backward;
}

std::string_view startKey(const Place* from, Direction direction) {
    if (from != nullptr) return from->key;
    return direction == Direction::forward ? beforeAllKeys : afterAllKeys;
}

CEOID startRecord(const Place* from, Direction direction) {
    if (from != nullptr) return from->record;
    return direction == Direction::forward ? noRecordBefore : noRecordAfter;
}

/// Fills a vector of entries anew, into the buffers of those that it held.
class Refill {
public:
    explicit Refill(std::vector<Entry>& entries) : entries_(entries) {}
    ~Refill() { entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(used_), entries_.end()); }
    Refill(const Refill&) = delete;
    Refill& operator=(const Refill&) = delete;

    void add(std::string_view key, CEOID record, std::string_view packed) {
        if (used_ == entries_.size()) entries_.emplace_back();
        Entry& entry = entries_[used_++];
        entry.place.key.assign(key);
        entry.place.record = record;
        entry.packed.assign(packed);
    }

private:
    std::vector<Entry>& entries_;
    std::size_t used_ = 0;
};

}  // namespace

DWORD SqliteEngine::openOrder(CEOID database, const SortOrder& order, OrderId& id) {
    if (!hasOrder(order.property)) return noOrderOnBlob();
    const SortOrder wanted = canonicalOrder(order);
    bool exists = false;
    const auto takeExisting = [&] {
        const auto existing = existingOrder(database, wanted);
        exists = existing.has_value();
        if (exists) id = *existing;
        return exists;
    };
    const DWORD error =
        reading([&] { return takeExisting() || find(database) != nullptr ? ERROR_SUCCESS : noSuchDatabase(); });
    if (error != ERROR_SUCCESS || exists) return error;
    return writing([&]() -> DWORD {
        DatabaseState* found = find(database);
        if (found == nullptr) return noSuchDatabase();
        if (!takeExisting()) id = addOrder(*found, wanted);  // another may have built it meanwhile
        return ERROR_SUCCESS;
    });
}

std::optional<OrderId> SqliteEngine::existingOrder(CEOID database, const SortOrder& wanted) {
    if (wanted.property == 0) return find(database) ? std::optional(creationOrderOf(database)) : std::nullopt;
    SqliteQuery query(*connection_, Sql::findOrder, database, wanted.property, wanted.flags);
    return query.step() ? std::optional(query.integer(0)) : std::nullopt;
}

OrderId SqliteEngine::addOrder(DatabaseState& database, const SortOrder& wanted) {
    OrderId id = 0;
    {
        SqliteQuery query(*connection_, Sql::insertOrder, database.info.id, wanted.property, wanted.flags);
        if (!query.step()) throw connection_->damage();
        id = query.integer(0);
        query.step();
    }
    fillOrder(database.info.id, id, wanted);
    database.orders.push_back({id, wanted, 0, false});
    counters_.store().unwritten = true;
    return id;
}

void SqliteEngine::fillOrder(CEOID database, OrderId id, const SortOrder& order) {
    SqliteQuery row(*connection_, Sql::recordsOfDatabase, rowOf(database, noRecordBefore),
                    rowOf(database, noRecordAfter));
    while (row.step()) {
        if (!wholeRecord(row.bytes(1))) throw connection_->damage();
        runSql(*connection_, Sql::insertKey, id, keys_.keyOfRecord(order, row.bytes(1)), recordOfRow(row.integer(0)));
    }
}

DWORD SqliteEngine::bringUpToDate() {
    return reading([&]() -> DWORD {
        if (counters_.store().collation == keys_.version()) return ERROR_SUCCESS;
        try {
            runSql(*connection_, Sql::begin);
            counters_.forget();
            rebuild();
            runSql(*connection_, Sql::commit);
            counters_.forget();
        } catch (...) {
            connection_->rollBack();
            throw;
        }
        return ERROR_SUCCESS;
    });
}

void SqliteEngine::rebuild() {
    if (counters_.store().collation == keys_.version()) return;  // another was quicker
    if (upgradeTables(*connection_)) fillNumbers();
    rebuildTextOrders();
    runSql(*connection_, Sql::writeCollation, keys_.version());
}

void SqliteEngine::rebuildTextOrders() {
    struct TextOrder {
        CEOID database;
        KeptOrder kept;
    };
    std::vector<TextOrder> orders;
    for (SqliteQuery row(*connection_, Sql::textOrders, DWORD{kindText}); row.step();) {
        orders.push_back({row.dword(1), {row.integer(0), {row.dword(2), row.dword(3)}, row.natural(4), false}});
    }
    for (const auto& [database, kept] : orders) {
        runSql(*connection_, Sql::deleteKeys, kept.id);
        fillOrder(database, kept.id, kept.order);
        runSql(*connection_, Sql::writeOrder, kept.moves + 1, kept.id);
    }
}

CEOID SqliteEngine::databaseOf(OrderId order) {
    if (isCreationOrder(order)) return databaseOfCreationOrder(order);
    if (const auto known = homes_.find(order); known != homes_.end()) return known->second;
    SqliteQuery query(*connection_, Sql::readOrder, order);
    if (!query.step()) return 0;
    return homes_[order] = query.dword(0);
}

SortOrder SqliteEngine::orderOf(const DatabaseState& database, OrderId order) const {
    if (isCreationOrder(order)) return {};
    const auto found = std::find_if(database.orders.begin(), database.orders.end(),
                                    [&](const KeptOrder& kept) { return kept.id == order; });
    if (found == database.orders.end()) throw connection_->damage();
    return found->order;
}

DWORD SqliteEngine::step(OrderId order, const Place* from, Direction direction, std::size_t limit, Fetch fetch,
                         std::vector<Entry>& entries) {
    const DWORD error = reading([&]() -> DWORD {
        const CEOID database = databaseOf(order);
        if (isCreationOrder(order)) {
            stepCreated(database, from, direction, limit, fetch, entries);
        } else if (fetch == Fetch::records) {
            stepReading(database, order, from, direction, limit, entries);
        } else {
            stepKeys(order, from, direction, limit, entries);
        }
        return entries.empty() && find(database) == nullptr ? noSuchOrder() : ERROR_SUCCESS;
    });
    if (error != ERROR_SUCCESS) entries.clear();
    return error;
}

void SqliteEngine::stepKeys(OrderId order, const Place* from, Direction direction, std::size_t limit,
                            std::vector<Entry>& entries) {
    SqliteQuery row(*connection_, inDirection(direction, Sql::stepForward, Sql::stepBackward), order,
                    startKey(from, direction), startRecord(from, direction), std::uint64_t{limit});
    Refill refill(entries);
    while (row.step())
        refill.add(row.bytes(0), row.dword(1), {});
}

void SqliteEngine::stepReading(CEOID database, OrderId order, const Place* from, Direction direction, std::size_t limit,
                               std::vector<Entry>& entries) {
    SqliteQuery row(*connection_, inDirection(direction, Sql::stepForwardReading, Sql::stepBackwardReading), order,
                    startKey(from, direction), startRecord(from, direction), std::uint64_t{limit}, rowOf(database, 0));
    Refill refill(entries);
    while (row.step()) {
        const std::string_view packed = row.bytes(2);
        if ((packed.empty() && row.isNull(2)) || !wholeRecord(packed)) throw connection_->damage();
        refill.add(row.bytes(0), row.dword(1), packed);
    }
}

void SqliteEngine::stepCreated(CEOID database, const Place* from, Direction direction, std::size_t limit, Fetch fetch,
                               std::vector<Entry>& entries) {
    const bool whole = fetch == Fetch::records;
    const Sql forward = whole ? Sql::createdForwardReading : Sql::createdForward;
    const Sql backward = whole ? Sql::createdBackwardReading : Sql::createdBackward;
    const CEOID farEnd = direction == Direction::forward ? noRecordAfter : noRecordBefore;
    SqliteQuery row(*connection_, inDirection(direction, forward, backward),
                    rowOf(database, startRecord(from, direction)), rowOf(database, farEnd), std::uint64_t{limit});
    Refill refill(entries);
    while (row.step()) {
        const std::string_view packed = whole ? row.bytes(1) : std::string_view();
        if (!wholeRecord(packed)) throw connection_->damage();
        refill.add({}, recordOfRow(row.integer(0)), packed);
    }
}

DWORD SqliteEngine::stepTo(OrderId order, std::uint64_t index, Direction direction, Entry& entry) {
    return reading([&]() -> DWORD {
        const CEOID database = databaseOf(order);
        entry.packed.clear();
        if (isCreationOrder(order)) {
            SqliteQuery row(*connection_, inDirection(direction, Sql::createdIndexForward, Sql::createdIndexBackward),
                            rowOf(database, noRecordBefore), rowOf(database, noRecordAfter), index);
            if (row.step()) {
                entry.place = {{}, recordOfRow(row.integer(0))};
                return ERROR_SUCCESS;
            }
        } else {
            SqliteQuery row(*connection_, inDirection(direction, Sql::indexForward, Sql::indexBackward), order, index);
            if (row.step()) {
                entry.place = {std::string(row.bytes(0)), row.dword(1)};
                return ERROR_SUCCESS;
            }
        }
        return find(database) == nullptr ? noSuchOrder() : nothingFurther();
    });
}

DWORD SqliteEngine::findEqual(OrderId by, std::string_view key, OrderId along, Direction direction, Place& found) {
    return reading([&]() -> DWORD {
        const SqliteSnapshot snapshot(*connection_);
        const CEOID database = databaseOf(by);
        const CEOID other = databaseOf(along);
        if (database == 0 || other == 0) return noSuchOrder();
        if (other != database) return ordersOfTwoDatabases();
        // Asked only where there is nothing to be found: what the store knows of a database is read anew after every
        // change by another.
        const auto nothing = [&] { return find(database) == nullptr ? noSuchOrder() : nothingFurther(); };

        if (isCreationOrder(by)) {  // all records have the one key there
            Entry entry;
            if (!key.empty()) return nothing();
            const DWORD error = stepTo(along, 0, direction, entry);
            if (error == ERROR_SUCCESS) found = entry.place;
            return error;
        }
        if (by == along || isCreationOrder(along)) {
            SqliteQuery row(*connection_, inDirection(direction, Sql::firstEqual, Sql::lastEqual), by, key);
            if (!row.step()) return nothing();
            found = {by == along ? std::string(key) : std::string(), row.dword(0)};
            return ERROR_SUCCESS;
        }
        std::vector<CEOID> equal;
        for (SqliteQuery row(*connection_, Sql::equalRecords, by, key); row.step();) {
            equal.push_back(row.dword(0));
        }
        DatabaseState* state = equal.empty() ? nullptr : find(database);
        return state == nullptr ? nothing() : firstAlong(along, *state, equal, direction, found);
    });
}

/// Which of the records, of which there is one at least, ascending by identifier, comes first along an order.
DWORD SqliteEngine::firstAlong(OrderId along, DatabaseState& database, const std::vector<CEOID>& records,
                               Direction direction, Place& found) {
    if (records.size() > fewEqualRecords) {
        SqliteQuery row(*connection_, inDirection(direction, Sql::stepForward, Sql::stepBackward), along,
                        startKey(nullptr, direction), startRecord(nullptr, direction), noLimit);
        while (row.step()) {
            if (!std::binary_search(records.begin(), records.end(), row.dword(1))) continue;
            found = {std::string(row.bytes(0)), row.dword(1)};
            return ERROR_SUCCESS;
        }
        throw connection_->damage();
    }
    found = firstOf(database.info.id, records, orderOf(database, along), direction);
    return ERROR_SUCCESS;
}

Place SqliteEngine::firstOf(CEOID database, const std::vector<CEOID>& records, const SortOrder& along,
                            Direction direction) {
    std::vector<Place> places;
    for (const CEOID record : records) {
        std::string packed;
        if (readWhole(database, record, packed) != ERROR_SUCCESS) throw connection_->damage();
        places.push_back({keys_.keyOfRecord(along, packed), record});
    }
    const auto [first, last] = std::minmax_element(places.begin(), places.end());
    return direction == Direction::forward ? *first : *last;
}

DWORD SqliteEngine::placeOf(OrderId order, CEOID record, Place& place) {
    return reading([&]() -> DWORD {
        const SqliteSnapshot snapshot(*connection_);
        const CEOID database = databaseOf(order);
        DatabaseState* state = database == 0 ? nullptr : find(database);
        if (state == nullptr) return noSuchOrder();
        std::string packed;
        if (const DWORD error = readWhole(database, record, packed)) return error;
        place = {keys_.keyOfRecord(orderOf(*state, order), packed), record};
        return ERROR_SUCCESS;
    });
}

DWORD SqliteEngine::orderVersion(OrderId order, std::uint64_t& version) {
    return reading([&]() -> DWORD {
        const CEOID database = databaseOf(order);
        DatabaseState* state = database == 0 ? nullptr : find(database);
        const auto found = state == nullptr ? std::nullopt : state->versionOf(order);
        if (!found) return noSuchOrder();
        version = *found;
        return ERROR_SUCCESS;
    });
}

std::uint64_t SqliteEngine::storeVersion() {
    try {
        return ownCommits_ << 32 | (counters_.dataVersion() & 0xFFFF'FFFF);
    } catch (const SqliteFailure&) {
        return ++ownCommits_ << 32;  // nobody knows, so it may have changed
    }
}

DWORD SqliteEngine::changesAfter(std::uint64_t sequence, std::size_t limit, std::vector<Change>& changes) {
    changes.clear();
    return reading([&]() -> DWORD {
        SqliteQuery row(*connection_, Sql::changesAfter, sequence, std::uint64_t{limit});
        while (row.step()) {
            changes.push_back({row.natural(0), row.dword(1), row.dword(2), static_cast<ChangeKind>(row.dword(3)),
                               row.natural(4), row.natural(5)});
        }
        const bool gap = !changes.empty() && changes.front().sequence != sequence + 1;
        if (gap) {
            changes.clear();
            if (!connection_->holdsWriteLock()) counters_.refresh();
            // What the log still keeps has no gaps. Whoever starts anew would meet this one again and again.
            if (sequence + keptChanges >= counters_.store().lastChange) throw connection_->damage();
        }
        return gap ? logStartsLater() : ERROR_SUCCESS;
    });
}

DWORD SqliteEngine::lastChange(std::uint64_t& sequence) {
    return reading([&]() -> DWORD {
        if (!connection_->holdsWriteLock()) counters_.refresh();
        sequence = counters_.store().lastChange;
        return ERROR_SUCCESS;
    });
}

}  // namespace Platform
