#pragma once

#include <chrono>
#include <memory>
#include <new>
#include <optional>
#include <unordered_map>

#include "tessera/platform/engine/RecordEngine.h"
#include "tessera/platform/engine/SqliteConnection.h"
#include "tessera/platform/engine/SqliteCounters.h"
#include "tessera/platform/engine/StoreError.h"

namespace Platform {

/// The engine on a SQLite file: one connection, used by one thread. A write outside a unit is a unit
/// of its own. Within the engine failing storage is an exception, SqliteFailure; every call ends it.
class SqliteEngine final : public RecordEngine {
public:
    SqliteEngine(std::unique_ptr<SqliteConnection> connection, const std::string& locale);

    /// Makes the keys of text anew when the store has those of another version of the collation, and gives a store of
    /// an earlier format what it lacks.
    [[nodiscard]] DWORD bringUpToDate();

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
    void beginGlance() noexcept override { glancing_ = true; }
    void endGlance() noexcept override;
    std::uint64_t storeVersion() override;
    DWORD changesAfter(std::uint64_t sequence, std::size_t limit, std::vector<Change>& changes) override;
    DWORD lastChange(std::uint64_t& sequence) override;
    std::uint64_t origin() const override { return origin_; }
    DWORD beginUnit() override;
    DWORD endUnit() override;
    void dropUnit() noexcept override;

private:
    using Clock = std::chrono::steady_clock;

    template <typename Call>
    DWORD reading(Call&& call);
    template <typename Call>
    DWORD writing(Call&& call);

    void beginReading();
    void begin();
    void commit();
    void pruneLog();
    void undo() noexcept;
    DWORD giveUp(const SqliteFailure& failure);
    DWORD failedToRead(const SqliteFailure& failure);
    void leaveOthersTheirTurn() const;

    DatabaseState* find(CEOID database);
    std::optional<OrderId> existingOrder(CEOID database, const SortOrder& wanted);
    OrderId addOrder(DatabaseState& database, const SortOrder& wanted);
    void fillOrder(CEOID database, OrderId id, const SortOrder& order);
    void rebuild();
    void rebuildTextOrders();
    void addNumbers(const DatabaseState& database, CEOID record, std::string_view packed);
    void removeNumbers(const DatabaseState& database, CEOID record, std::string_view packed);
    void fillNumbers();

    DWORD createRecord(DatabaseState& database, CEOID& record, std::span<const Edit> edits);
    DWORD changeRecord(DatabaseState& database, CEOID record, std::span<const Edit> edits);
    DWORD eraseRecord(DatabaseState& database, CEOID record);
    DWORD readWhole(CEOID database, CEOID record, std::string& packed);
    DWORD damagedRecord() const;
    void note(DatabaseState& database, CEOID record, ChangeKind kind);

    /// The database that an order belongs to; 0 when there is no such order.
    CEOID databaseOf(OrderId order);
    SortOrder orderOf(const DatabaseState& database, OrderId order) const;
    void stepKeys(OrderId order, const Place* from, Direction direction, std::size_t limit,
                  std::vector<Entry>& entries);
    void stepCreated(CEOID database, const Place* from, Direction direction, std::size_t limit, Fetch fetch,
                     std::vector<Entry>& entries);
    void stepReading(CEOID database, OrderId order, const Place* from, Direction direction, std::size_t limit,
                     std::vector<Entry>& entries);
    Place firstOf(CEOID database, const std::vector<CEOID>& records, const SortOrder& along, Direction direction);
    DWORD firstAlong(OrderId along, DatabaseState& database, const std::vector<CEOID>& records, Direction direction,
                     Place& found);

    std::unique_ptr<SqliteConnection> connection_;
    SortKeys keys_;
    SqliteCounters counters_;
    std::uint64_t origin_;
    std::unordered_map<OrderId, CEOID> homes_;  // of the orders met so far
    std::uint64_t ownCommits_ = 0;
    std::uint64_t lastChangeBefore_ = 0;  // the unit
    bool inUnit_ = false;
    bool glancing_ = false;
    std::optional<SqliteFailure> failure_;  // of the unit that is open
    Clock::time_point unitBegan_;
    Clock::time_point unitEnded_;
};

/// Turns what was thrown into the call's answer.
template <typename Call>
DWORD SqliteEngine::reading(Call&& call) {
    try {
        beginReading();
        return call();
    } catch (const SqliteFailure& failure) {
        return failedToRead(failure);
    } catch (const std::bad_alloc&) {
        return failedToRead({ERROR_NOT_ENOUGH_MEMORY, "there is not enough memory"});
    }
}

/// Runs the call in the open unit, or in one of its own. The call answers an error only before it writes.
template <typename Call>
DWORD SqliteEngine::writing(Call&& call) {
    if (failure_) return setStoreError(failure_->error, failure_->text);
    try {
        if (inUnit_) return call();
        begin();
        const DWORD error = call();
        if (error == ERROR_SUCCESS) {
            commit();
        } else {
            connection_->rollBack();
        }
        return error;
    } catch (const SqliteFailure& failure) {
        return giveUp(failure);
    } catch (const std::bad_alloc&) {
        return giveUp({ERROR_NOT_ENOUGH_MEMORY, "there is not enough memory"});
    }
}

/// A record's place in the table of records.
constexpr std::int64_t rowOf(CEOID database, CEOID record) {
    return static_cast<std::int64_t>(std::uint64_t{database} << 32 | record);
}
constexpr CEOID recordOfRow(std::int64_t row) {
    return static_cast<CEOID>(row);
}
inline constexpr CEOID noRecordBefore = 0;
inline constexpr CEOID noRecordAfter = 0xFFFF'FFFF;

}  // namespace Platform
