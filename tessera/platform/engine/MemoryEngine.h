#pragma once

#include <condition_variable>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "tessera/platform/base/Results.h"
#include "tessera/platform/engine/RecordEngine.h"
#include "tessera/platform/port/Wake.h"

namespace Platform {

struct MemoryOrder {
    SortOrder order;
    std::uint64_t version = 0;
    std::set<Place> places;
};

struct MemoryDatabase {
    DatabaseInfo info;
    WString folded;
    std::map<CEOID, std::string> records;
    std::map<OrderId, MemoryOrder> orders;  // the order of creation among them
};

struct MemoryState {
    std::map<CEOID, std::shared_ptr<MemoryDatabase>> databases;
    std::uint64_t nextId = 1;
    OrderId nextOrder = 1;
    std::uint64_t lastChange = 0;
};

/// Watches the commits of a store in memory.
class MemoryCommitWatch : public CommitWatch {
public:
    int fd() const override { return wake.fd(); }
    void clear() override { wake.clear(); }

    port::Wake wake;
};

struct MemoryShared {
    /// Makes what was written the newest that there is. With the mutex held.
    void commit(const std::vector<Change>& changes);

    std::mutex mutex;
    std::condition_variable unitEnded;
    const void* writer = nullptr;  // the engine whose unit is open
    MemoryState state;
    std::deque<Change> log;
    std::uint64_t commits = 0;
    std::vector<MemoryCommitWatch*> watches;
    std::string locale;
    StoreOptions options;
};

/// The engine in memory: containers of the standard library under one mutex, held for the length of a
/// call. A unit works on a copy of the state that shares every database it does not write, so that
/// others go on reading what is committed, and a unit that is never ended leaves nothing.
class MemoryEngine : public RecordEngine {
public:
    explicit MemoryEngine(std::shared_ptr<MemoryShared> shared);
    ~MemoryEngine() override { MemoryEngine::dropUnit(); }

    const SortKeys& sortKeys() const override { return keys_; }
    DWORD createDatabase(WStringView name, DWORD type, std::span<const SortOrder> orders, CEOID& database) override;
    DWORD dropDatabase(CEOID database) override;
    DWORD findDatabase(WStringView name, CEOID& database) override;
    DWORD databaseInfo(CEOID database, DatabaseInfo& info) override;
    DWORD openOrder(CEOID database, const SortOrder& order, OrderId& id) override;
    DWORD get(CEOID database, CEOID record, std::string& packed) override;
    DWORD put(CEOID database, CEOID& record, std::span<const Edit> edits) override;
    DWORD erase(CEOID database, CEOID record) override;
    DWORD step(OrderId order, const Place* from, Direction direction, std::size_t limit, Fetch fetch,
               std::vector<Entry>& entries) override;
    DWORD stepTo(OrderId order, std::uint64_t index, Direction direction, Entry& entry) override;
    DWORD findEqual(OrderId by, std::string_view key, OrderId along, Direction direction, Place& found) override;
    DWORD findNumber(std::string_view number, const SortOrder& along, CEOID& record) override;
    DWORD placeOf(OrderId order, CEOID record, Place& place) override;
    DWORD orderVersion(OrderId order, std::uint64_t& version) override;
    std::uint64_t storeVersion() override;
    DWORD changesAfter(std::uint64_t sequence, std::size_t limit, std::vector<Change>& changes) override;
    DWORD lastChange(std::uint64_t& sequence) override;
    std::uint64_t origin() const override { return origin_; }
    DWORD beginUnit() override;
    DWORD endUnit() override;
    void dropUnit() noexcept override;

private:
    using Lock = std::unique_lock<std::mutex>;

    template <typename Write>
    DWORD writing(Write&& write);
    DWORD awaitTurn(Lock& lock);

    MemoryState& state() { return unit_ ? *unit_ : shared_->state; }
    const MemoryDatabase* find(CEOID database);
    MemoryDatabase* findToWrite(CEOID database);
    static std::optional<OrderId> existingOrder(const MemoryDatabase& database, const SortOrder& wanted);
    const MemoryDatabase* findByOrder(OrderId order);
    const MemoryOrder* findOrder(OrderId order);
    MemoryOrder& buildOrder(MemoryDatabase& database, OrderId id, const SortOrder& order) const;
    DWORD createRecord(MemoryDatabase& database, CEOID& record, std::span<const Edit> edits);
    DWORD changeRecord(MemoryDatabase& database, CEOID record, std::span<const Edit> edits);
    void note(MemoryDatabase& database, CEOID record, ChangeKind kind);

    std::shared_ptr<MemoryShared> shared_;
    SortKeys keys_;
    std::uint64_t origin_;
    std::unique_ptr<MemoryState> unit_;
    std::vector<Change> written_;  // what the unit or the call has written so far
};

// A write outside a unit changes the committed state itself: it checks before it writes, under the mutex.
template <typename Write>
DWORD MemoryEngine::writing(Write&& write) {
    Lock lock(shared_->mutex);
    if (unit_) return write();
    if (const DWORD error = awaitTurn(lock)) return error;
    if (const DWORD error = write()) return error;
    shared_->commit(written_);
    written_.clear();
    return ERROR_SUCCESS;
}

}  // namespace Platform
