#include "tessera/platform/engine/MemoryEngine.h"

#include <system_error>

#include "tessera/platform/engine/StoreError.h"
#include "tessera/platform/engine/StoreRules.h"

namespace Platform {

MemoryEngine::MemoryEngine(std::shared_ptr<MemoryShared> shared)
    : shared_(std::move(shared)), keys_(shared_->locale), origin_(newOrigin()) {}

DWORD MemoryEngine::awaitTurn(Lock& lock) {
    const bool free =
        shared_->unitEnded.wait_for(lock, shared_->options.writerWait, [this] { return shared_->writer == nullptr; });
    return free ? ERROR_SUCCESS : setStoreError(ERROR_LOCK_VIOLATION, "another writer holds the store in memory");
}

void MemoryEngine::dropUnit() noexcept {
    if (!unit_) return;
    const Lock lock(shared_->mutex);
    unit_.reset();
    written_.clear();
    shared_->writer = nullptr;
    shared_->unitEnded.notify_one();
}

void MemoryShared::commit(const std::vector<Change>& changes) {
    log.insert(log.end(), changes.begin(), changes.end());
    if (log.size() > keptChanges) log.erase(log.begin(), log.end() - static_cast<std::ptrdiff_t>(keptChanges));
    ++commits;
    for (MemoryCommitWatch* watch : watches)
        watch->wake.wake();
}

DWORD MemoryEngine::beginUnit() {
    Lock lock(shared_->mutex);
    if (unit_) return setStoreError(ERROR_NOT_READY, "units do not nest");
    if (const DWORD error = awaitTurn(lock)) return error;
    unit_ = std::make_unique<MemoryState>(shared_->state);
    shared_->writer = this;
    return ERROR_SUCCESS;
}

DWORD MemoryEngine::endUnit() {
    if (!unit_) return setStoreError(ERROR_NOT_READY, "there is no unit to end");
    {
        const Lock lock(shared_->mutex);
        shared_->state = std::move(*unit_);
        shared_->commit(written_);
    }
    dropUnit();
    return ERROR_SUCCESS;
}

const MemoryDatabase* MemoryEngine::find(CEOID database) {
    const auto found = state().databases.find(database);
    return found == state().databases.end() ? nullptr : found->second.get();
}

/// The database, made the unit's own when the committed state shares it.
MemoryDatabase* MemoryEngine::findToWrite(CEOID database) {
    const auto found = state().databases.find(database);
    if (found == state().databases.end()) return nullptr;
    std::shared_ptr<MemoryDatabase>& kept = found->second;
    if (kept.use_count() > 1) kept = std::make_shared<MemoryDatabase>(*kept);
    return kept.get();
}

void MemoryEngine::note(MemoryDatabase& database, CEOID record, ChangeKind kind) {
    database.info.modified = ticksAfter(database.info.modified);
    written_.push_back({++state().lastChange, database.info.id, record, kind, origin_, database.info.modified});
}

DWORD MemoryEngine::createDatabase(WStringView name, DWORD type, std::span<const SortOrder> orders, CEOID& database) {
    if (const DWORD error = checkNewDatabase(name, orders)) return error;
    return writing([&]() -> DWORD {
        const WString folded = foldedName(name);
        for (const auto& [id, other] : state().databases) {
            if (other->folded == folded) return nameTaken();
        }
        if (state().nextId > lastIdentifier) return identifiersUsedUp();

        auto made = std::make_shared<MemoryDatabase>();
        made->folded = folded;
        made->info.id = static_cast<CEOID>(state().nextId++);
        made->info.name = keptName(name);
        made->info.type = type;
        made->info.declaredOrders.assign(orders.begin(), orders.end());
        made->info.modified = ticksAfter(0);
        buildOrder(*made, creationOrderOf(made->info.id), {});
        database = made->info.id;
        state().databases.emplace(database, std::move(made));
        return ERROR_SUCCESS;
    });
}

DWORD MemoryEngine::dropDatabase(CEOID database) {
    return writing([&]() -> DWORD {
        MemoryDatabase* dropped = findToWrite(database);
        if (dropped == nullptr) return noSuchDatabase();
        for (const auto& [record, packed] : dropped->records) {
            note(*dropped, record, ChangeKind::deleted);
        }
        state().databases.erase(database);
        return ERROR_SUCCESS;
    });
}

DWORD MemoryEngine::findDatabase(WStringView name, CEOID& database) {
    const Lock lock(shared_->mutex);
    const WString folded = foldedName(name);
    for (const auto& [id, candidate] : state().databases) {
        if (candidate->folded != folded) continue;
        database = id;
        return ERROR_SUCCESS;
    }
    return noSuchDatabase();
}

DWORD MemoryEngine::databaseInfo(CEOID database, DatabaseInfo& info) {
    const Lock lock(shared_->mutex);
    const MemoryDatabase* found = find(database);
    if (found == nullptr) return noSuchDatabase();
    info = found->info;
    return ERROR_SUCCESS;
}

DWORD MemoryEngine::get(CEOID database, CEOID record, std::string& packed) {
    const Lock lock(shared_->mutex);
    const MemoryDatabase* found = find(database);
    if (found == nullptr || !found->records.contains(record)) return noSuchRecord();
    packed = found->records.at(record);
    return ERROR_SUCCESS;
}

DWORD MemoryEngine::put(CEOID database, CEOID& record, std::span<const Edit> edits) {
    return writing([&]() -> DWORD {
        MemoryDatabase* found = findToWrite(database);
        if (found == nullptr) return noSuchDatabase();
        return record == 0 ? createRecord(*found, record, edits) : changeRecord(*found, record, edits);
    });
}

DWORD MemoryEngine::createRecord(MemoryDatabase& database, CEOID& record, std::span<const Edit> edits) {
    std::string packed;
    if (applyEdits({}, edits, packed) != ERROR_SUCCESS) return unfitProperties();
    if (state().nextId > lastIdentifier) return identifiersUsedUp();
    record = static_cast<CEOID>(state().nextId++);
    for (auto& [id, order] : database.orders) {
        order.places.insert({keys_.keyOfRecord(order.order, packed), record});
        ++order.version;
    }
    ++database.info.records;
    database.info.bytes += packed.size();
    note(database, record, ChangeKind::created);
    database.records.emplace(record, std::move(packed));
    return ERROR_SUCCESS;
}

DWORD MemoryEngine::changeRecord(MemoryDatabase& database, CEOID record, std::span<const Edit> edits) {
    const auto found = database.records.find(record);
    if (found == database.records.end()) return noSuchRecord();
    std::string packed;
    if (applyEdits(found->second, edits, packed) != ERROR_SUCCESS) return unfitProperties();
    for (auto& [id, order] : database.orders) {
        if (samePlace(order.order, found->second, packed)) continue;
        order.places.erase({keys_.keyOfRecord(order.order, found->second), record});
        order.places.insert({keys_.keyOfRecord(order.order, packed), record});
        ++order.version;
    }
    database.info.bytes += packed.size() - found->second.size();
    note(database, record, ChangeKind::changed);
    found->second = std::move(packed);
    return ERROR_SUCCESS;
}

DWORD MemoryEngine::erase(CEOID database, CEOID record) {
    return writing([&]() -> DWORD {
        MemoryDatabase* found = findToWrite(database);
        if (found == nullptr) return noSuchDatabase();
        const auto erased = found->records.find(record);
        if (erased == found->records.end()) return noSuchRecord();
        for (auto& [id, order] : found->orders) {
            order.places.erase({keys_.keyOfRecord(order.order, erased->second), record});
            ++order.version;
        }
        --found->info.records;
        found->info.bytes -= erased->second.size();
        note(*found, record, ChangeKind::deleted);
        found->records.erase(erased);
        return ERROR_SUCCESS;
    });
}

namespace {

/// Is woken while it lives.
class ListedWatch : public MemoryCommitWatch {
public:
    explicit ListedWatch(std::shared_ptr<MemoryShared> shared) : shared_(std::move(shared)) {
        const std::lock_guard lock(shared_->mutex);
        shared_->watches.push_back(this);
    }
    ~ListedWatch() override {
        const std::lock_guard lock(shared_->mutex);
        std::erase(shared_->watches, this);
    }

private:
    std::shared_ptr<MemoryShared> shared_;
};

class MemoryStore : public RecordStore {
public:
    MemoryStore(const std::string& locale, const StoreOptions& options) {
        shared_->locale = locale;
        shared_->options = options;
    }

    std::unique_ptr<RecordEngine> connect() override { return std::make_unique<MemoryEngine>(shared_); }
    std::unique_ptr<CommitWatch> watchCommits() override {
        try {
            return std::make_unique<ListedWatch>(shared_);
        } catch (const std::system_error& error) {
            setStoreError(ERROR_NOT_ENOUGH_MEMORY, "the store in memory cannot be watched: " + error.code().message());
            return nullptr;
        }
    }

private:
    std::shared_ptr<MemoryShared> shared_ = std::make_shared<MemoryShared>();
};

}  // namespace

std::unique_ptr<RecordStore> openMemoryStore(const std::string& locale, const StoreOptions& options) {
    auto store = std::make_unique<MemoryStore>(locale, options);
    const auto engine = store->connect();
    if (createSystemDatabases(*engine) != ERROR_SUCCESS) return nullptr;
    return store;
}

}  // namespace Platform
