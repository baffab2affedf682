#include "tessera/platform/engine/SqliteEngine.h"

#include <thread>
#include <utility>

#include "tessera/platform/engine/ContactNumbers.h"
#include "tessera/platform/engine/StoreRules.h"
#include "tessera/platform/port/FileWatch.h"

namespace Platform {
namespace {

/// The log is shortened when its end passes a multiple of this, not with every change.
constexpr std::uint64_t pruneEvery = 1'024;

/// After a unit as long as this a program waits so long before its next, for those that look every
/// millisecond whether it is their turn.
constexpr std::chrono::milliseconds longUnit{50};
constexpr std::chrono::milliseconds turnForOthers{3};

}  // namespace

SqliteEngine::SqliteEngine(std::unique_ptr<SqliteConnection> connection, const std::string& locale)
    : connection_(std::move(connection)), keys_(locale), counters_(*connection_), origin_(newOrigin()) {
    // Makes the statement, which takes memory: when it is wanted, memory may be what is short.
    SqliteQuery(*connection_, Sql::rollback);
}

// Units.

/// In a glance the first reading begins a transaction, which those after it are made in.
void SqliteEngine::beginReading() {
    if (glancing_ && !connection_->inTransaction()) runSql(*connection_, Sql::beginReading);
}

void SqliteEngine::endGlance() noexcept {
    glancing_ = false;
    if (!inUnit_ && connection_->inTransaction()) connection_->rollBack();
}

void SqliteEngine::begin() {
    if (connection_->inTransaction()) connection_->rollBack();  // what a glance reads in
    runSql(*connection_, Sql::begin);
    counters_.refresh();
    const StoreState& store = counters_.store();
    lastChangeBefore_ = store.lastChange;
    if (store.collation == keys_.version()) return;
    throw connection_->failure(ERROR_REVISION_MISMATCH, "a program with another collation has rebuilt it");
}

void SqliteEngine::commit() {
    const bool written = counters_.write();
    if (written) pruneLog();
    runSql(*connection_, Sql::commit);
    if (!written) return;
    ++ownCommits_;
    port::touchFile(connection_->file());  // for whoever sleeps until there is something new
}

void SqliteEngine::pruneLog() {
    const std::uint64_t last = counters_.store().lastChange;
    if (last / pruneEvery == lastChangeBefore_ / pruneEvery || last <= keptChanges) return;
    runSql(*connection_, Sql::pruneChanges, last - keptChanges);
}

void SqliteEngine::undo() noexcept {
    connection_->rollBack();
    counters_.forget();
    homes_.clear();
}

DWORD SqliteEngine::giveUp(const SqliteFailure& failure) {
    undo();
    if (inUnit_) {
        failure_ = SqliteFailure{failure.error, {}};  // before all that takes memory
        failure_->text = failure.text;
    }
    return setStoreError(failure.error, failure.text);
}

/// What a unit writes rests on what it has read: when a reading fails, nothing of the unit is kept. Damage is another
/// matter. It would be there next time as well, and who writes knows how to pass by it.
DWORD SqliteEngine::failedToRead(const SqliteFailure& failure) {
    const bool givesUp = inUnit_ && !failure_ && failure.error != ERROR_FILE_CORRUPT;
    return givesUp ? giveUp(failure) : setStoreError(failure.error, failure.text);
}

void SqliteEngine::leaveOthersTheirTurn() const {
    const bool straightOn = Clock::now() - unitEnded_ < turnForOthers;
    if (straightOn && unitEnded_ - unitBegan_ > longUnit) std::this_thread::sleep_for(turnForOthers);
}

DWORD SqliteEngine::beginUnit() {
    if (inUnit_) return setStoreError(ERROR_NOT_READY, "units do not nest");
    leaveOthersTheirTurn();
    const DWORD error = reading([&]() -> DWORD {
        begin();
        return ERROR_SUCCESS;
    });
    if (error != ERROR_SUCCESS) {
        connection_->rollBack();
        return error;
    }
    inUnit_ = true;
    unitBegan_ = Clock::now();
    return ERROR_SUCCESS;
}

DWORD SqliteEngine::endUnit() {
    if (!inUnit_) return setStoreError(ERROR_NOT_READY, "there is no unit to end");
    const DWORD error = writing([&]() -> DWORD {
        commit();
        return ERROR_SUCCESS;
    });
    inUnit_ = false;
    failure_.reset();
    unitEnded_ = Clock::now();
    return error;
}

void SqliteEngine::dropUnit() noexcept {
    if (!inUnit_) return;
    undo();
    inUnit_ = false;
    failure_.reset();
    unitEnded_ = Clock::now();
}

// Databases.

DatabaseState* SqliteEngine::find(CEOID database) {
    if (!connection_->holdsWriteLock()) counters_.refresh();
    return counters_.find(database);
}

DWORD SqliteEngine::createDatabase(WStringView name, DWORD type, std::span<const SortOrder> orders, CEOID& database) {
    if (const DWORD error = checkNewDatabase(name, orders)) return error;
    return writing([&]() -> DWORD {
        const WString folded = foldedName(name);
        if (SqliteQuery(*connection_, Sql::findDatabase, packedText(folded)).step()) return nameTaken();
        StoreState& store = counters_.store();
        if (store.nextId > lastIdentifier) return identifiersUsedUp();

        const auto id = static_cast<CEOID>(store.nextId++);
        store.unwritten = true;
        runSql(*connection_, Sql::insertDatabase, id, packedText(keptName(name)), packedText(folded), type,
               packOrders(orders), ticksAfter(0));
        for (const SortOrder& order : orders) {
            const SortOrder wanted = canonicalOrder(order);
            if (!existingOrder(id, wanted)) addOrder(*counters_.find(id), wanted);
        }
        database = id;
        return ERROR_SUCCESS;
    });
}

DWORD SqliteEngine::dropDatabase(CEOID database) {
    return writing([&]() -> DWORD {
        const DatabaseState* dropped = find(database);
        if (dropped == nullptr) return noSuchDatabase();
        StoreState& store = counters_.store();
        const std::int64_t first = rowOf(database, noRecordBefore);
        const std::int64_t last = rowOf(database, noRecordAfter);
        runSql(*connection_, Sql::insertDeletedChanges, first, last, store.lastChange, database,
               static_cast<DWORD>(ChangeKind::deleted), origin_, ticksAfter(dropped->info.modified));
        store.lastChange += connection_->rowsWritten();
        store.unwritten = true;
        for (const KeptOrder& order : dropped->orders) {
            runSql(*connection_, Sql::deleteKeys, order.id);
        }
        if (dropped->keepsNumbers) runSql(*connection_, Sql::deleteNumbers, first, last);
        runSql(*connection_, Sql::deleteOrders, database);
        runSql(*connection_, Sql::deleteRecords, first, last);
        runSql(*connection_, Sql::deleteDatabase, database);
        counters_.remove(database);
        return ERROR_SUCCESS;
    });
}

DWORD SqliteEngine::findDatabase(WStringView name, CEOID& database) {
    return reading([&]() -> DWORD {
        const WString folded = foldedName(name);
        SqliteQuery query(*connection_, Sql::findDatabase, packedText(folded));
        if (!query.step()) return noSuchDatabase();
        database = query.dword(0);
        return ERROR_SUCCESS;
    });
}

DWORD SqliteEngine::databaseInfo(CEOID database, DatabaseInfo& info) {
    return reading([&]() -> DWORD {
        const DatabaseState* found = find(database);
        if (found == nullptr) return noSuchDatabase();
        info = found->info;
        return ERROR_SUCCESS;
    });
}

// Records.

DWORD SqliteEngine::get(CEOID database, CEOID record, std::string& packed) {
    return reading([&] { return readWhole(database, record, packed); });
}

DWORD SqliteEngine::put(CEOID database, CEOID& record, std::span<const Edit> edits) {
    return writing([&]() -> DWORD {
        DatabaseState* found = find(database);
        if (found == nullptr) return noSuchDatabase();
        return record == 0 ? createRecord(*found, record, edits) : changeRecord(*found, record, edits);
    });
}

DWORD SqliteEngine::erase(CEOID database, CEOID record) {
    return writing([&]() -> DWORD {
        DatabaseState* found = find(database);
        return found == nullptr ? noSuchDatabase() : eraseRecord(*found, record);
    });
}

DWORD SqliteEngine::createRecord(DatabaseState& database, CEOID& record, std::span<const Edit> edits) {
    std::string packed;
    if (applyEdits({}, edits, packed) != ERROR_SUCCESS) return unfitProperties();
    StoreState& store = counters_.store();
    if (store.nextId > lastIdentifier) return identifiersUsedUp();

    const auto id = static_cast<CEOID>(store.nextId++);
    runSql(*connection_, Sql::insertRecord, rowOf(database.info.id, id), packed);
    for (const KeptOrder& order : database.orders)
        runSql(*connection_, Sql::insertKey, order.id, keys_.keyOfRecord(order.order, packed), id);
    addNumbers(database, id, packed);
    ++database.version;
    ++database.info.records;
    database.info.bytes += packed.size();
    note(database, id, ChangeKind::created);
    record = id;
    return ERROR_SUCCESS;
}

DWORD SqliteEngine::changeRecord(DatabaseState& database, CEOID record, std::span<const Edit> edits) {
    std::string before;
    if (const DWORD error = readWhole(database.info.id, record, before)) return error;
    std::string after;
    if (applyEdits(before, edits, after) != ERROR_SUCCESS) return unfitProperties();

    runSql(*connection_, Sql::updateRecord, rowOf(database.info.id, record), after);
    for (KeptOrder& order : database.orders) {
        if (samePlace(order.order, before, after)) continue;
        runSql(*connection_, Sql::deleteKey, order.id, keys_.keyOfRecord(order.order, before), record);
        runSql(*connection_, Sql::insertKey, order.id, keys_.keyOfRecord(order.order, after), record);
        ++order.moves;
        order.unwritten = true;
    }
    if (!sameNumbers(before, after)) {
        removeNumbers(database, record, before);
        addNumbers(database, record, after);
    }
    database.info.bytes += after.size() - before.size();
    note(database, record, ChangeKind::changed);
    return ERROR_SUCCESS;
}

DWORD SqliteEngine::eraseRecord(DatabaseState& database, CEOID record) {
    std::string packed;
    if (const DWORD error = readWhole(database.info.id, record, packed)) return error;
    for (const KeptOrder& order : database.orders)
        runSql(*connection_, Sql::deleteKey, order.id, keys_.keyOfRecord(order.order, packed), record);
    removeNumbers(database, record, packed);
    runSql(*connection_, Sql::deleteRecord, rowOf(database.info.id, record));
    ++database.version;
    --database.info.records;
    database.info.bytes -= packed.size();
    note(database, record, ChangeKind::deleted);
    return ERROR_SUCCESS;
}

DWORD SqliteEngine::readWhole(CEOID database, CEOID record, std::string& packed) {
    SqliteQuery query(*connection_, Sql::readRecord, rowOf(database, record));
    if (!query.step()) return noSuchRecord();
    if (!wholeRecord(query.bytes(0))) return damagedRecord();
    packed = query.bytes(0);
    return ERROR_SUCCESS;
}

DWORD SqliteEngine::damagedRecord() const {
    const SqliteFailure damage = connection_->damage();
    return setStoreError(damage.error, damage.text);
}

void SqliteEngine::note(DatabaseState& database, CEOID record, ChangeKind kind) {
    StoreState& store = counters_.store();
    database.info.modified = ticksAfter(database.info.modified);
    runSql(*connection_, Sql::insertChange, ++store.lastChange, database.info.id, record, static_cast<DWORD>(kind),
           origin_, database.info.modified);
    database.unwritten = true;
    store.unwritten = true;
}

}  // namespace Platform
