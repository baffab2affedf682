#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tessera/platform/engine/Record.h"
#include "tessera/platform/engine/SortKeys.h"

namespace Platform {

/// An order of a database, as openOrder gives it. Stays good while the database exists.
using OrderId = std::int64_t;

/// A place in an order: a sort key, and the record that has or had it. It outlives its record.
struct Place {
    std::string key;
    CEOID record = 0;

    friend auto operator<=>(const Place&, const Place&) = default;
};

enum class Direction { forward, backward };

/// A record as a walk meets it. `packed` is filled only when the walk asked for the records.
struct Entry {
    Place place;
    std::string packed;
};

enum class Fetch { placesOnly, records };

struct DatabaseInfo {
    CEOID id = 0;
    WString name;
    DWORD type = 0;
    std::vector<SortOrder> declaredOrders;
    DWORD records = 0;
    std::uint64_t bytes = 0;     ///< The packed size of all records.
    std::uint64_t modified = 0;  ///< FILETIME ticks; grows strictly with every change to the database.
};

/// What happened to a record; the values are those of the notifications.
enum class ChangeKind : DWORD { created = 0x401, deleted = 0x403, changed = 0x406 };

struct Change {
    std::uint64_t sequence = 0;  ///< Counts from 1 through the life of the store, in commit order.
    CEOID database = 0;
    CEOID record = 0;
    ChangeKind kind = ChangeKind::created;
    std::uint64_t origin = 0;  ///< Which engine object wrote it.
    std::uint64_t time = 0;    ///< FILETIME ticks.
};

/// The change log keeps this many changes.
inline constexpr std::uint64_t keptChanges = 100'000;

/// The narrow seam under the object store: databases of packed records, each walked in any number of
/// orders. One engine object serves one thread; engine objects of one store see each other's
/// committed work. Every call is atomic and, outside a unit, durable when it returns.
///
/// Calls answer a platform error, ERROR_SUCCESS when all went well; whoever fails also leaves a
/// sentence with setStoreError. Identifiers are unique in a store, start above 0, and are never reused.
class RecordEngine {
public:
    virtual ~RecordEngine() = default;

    virtual const SortKeys& sortKeys() const = 0;

    /// Names are at most 31 characters (longer is cut) and are compared without case. Up to four
    /// declared orders. ERROR_ALREADY_EXISTS, ERROR_INVALID_PARAMETER.
    [[nodiscard]] virtual DWORD createDatabase(WStringView name, DWORD type, std::span<const SortOrder> orders,
                                               CEOID& database) = 0;
    /// Removes the database and its records, each recorded as deleted. ERROR_FILE_NOT_FOUND.
    [[nodiscard]] virtual DWORD dropDatabase(CEOID database) = 0;
    /// ERROR_FILE_NOT_FOUND.
    [[nodiscard]] virtual DWORD findDatabase(WStringView name, CEOID& database) = 0;
    [[nodiscard]] virtual DWORD databaseInfo(CEOID database, DatabaseInfo& info) = 0;
    /// The order's identifier; builds the order and keeps it when the database had none such. Orders
    /// that differ only in direction are one. ERROR_INVALID_PARAMETER for a property without an order.
    [[nodiscard]] virtual DWORD openOrder(CEOID database, const SortOrder& order, OrderId& id) = 0;

    /// ERROR_KEY_DELETED when the database has no such record.
    [[nodiscard]] virtual DWORD get(CEOID database, CEOID record, std::string& packed) = 0;
    /// Changes a record, or makes one when `record` is 0, which then receives its identifier.
    [[nodiscard]] virtual DWORD put(CEOID database, CEOID& record, std::span<const Edit> edits) = 0;
    [[nodiscard]] virtual DWORD erase(CEOID database, CEOID record) = 0;

    /// The entries beyond `from` in that direction, nearest first, at most `limit`; a null `from`
    /// starts at the order's end on the other side. `from` itself is not included.
    [[nodiscard]] virtual DWORD step(OrderId order, const Place* from, Direction direction, std::size_t limit,
                                     Fetch fetch, std::vector<Entry>& entries) = 0;
    /// The entry at `index`, counted from the side that `direction` starts from. ERROR_NO_MORE_ITEMS.
    [[nodiscard]] virtual DWORD stepTo(OrderId order, std::uint64_t index, Direction direction, Entry& entry) = 0;
    /// Among the records whose key in the order `by` is `key`, the first in the order `along` (of the
    /// same database) in that direction. ERROR_NO_MORE_ITEMS when there is none.
    [[nodiscard]] virtual DWORD findEqual(OrderId by, std::string_view key, OrderId along, Direction direction,
                                          Place& found) = 0;
    /// Among the contacts one of whose telephone numbers reduces to exactly `number`, the first in the order
    /// `along`, ascending. ERROR_NO_MORE_ITEMS when there is none.
    [[nodiscard]] virtual DWORD findNumber(std::string_view number, const SortOrder& along, CEOID& record) = 0;
    /// Where a record stands in an order. ERROR_KEY_DELETED.
    [[nodiscard]] virtual DWORD placeOf(OrderId order, CEOID record, Place& place) = 0;
    /// Grows whenever an entry of the order comes, goes or moves; other writes leave it.
    [[nodiscard]] virtual DWORD orderVersion(OrderId order, std::uint64_t& version) = 0;

    /// Between these the reading calls may answer from one moment, which costs less than finding out at each what
    /// others have committed since. The engine's own writes are seen. Glances do not nest.
    virtual void beginGlance() noexcept {}
    virtual void endGlance() noexcept {}

    /// Differs from every earlier answer once anybody has committed anything since. Cheap.
    virtual std::uint64_t storeVersion() = 0;
    /// Changes after `sequence`, oldest first, at most `limit`. ERROR_NO_MORE_ITEMS when the log no
    /// longer reaches back so far: the caller must read the databases anew.
    [[nodiscard]] virtual DWORD changesAfter(std::uint64_t sequence, std::size_t limit,
                                             std::vector<Change>& changes) = 0;
    /// The sequence number of the newest change, 0 in a new store.
    [[nodiscard]] virtual DWORD lastChange(std::uint64_t& sequence) = 0;
    /// This engine object's mark in the changes that it writes.
    virtual std::uint64_t origin() const = 0;

    /// A unit makes the calls up to its end one: durable together when endUnit returns, seen by
    /// others together. Beginning one waits for the writer that is at work (ERROR_LOCK_VIOLATION when
    /// the wait is over). Units do not nest. When storage fails inside a unit, the whole unit is given
    /// up: its later writes and its end answer that failure, and nothing of it stays.
    [[nodiscard]] virtual DWORD beginUnit() = 0;
    [[nodiscard]] virtual DWORD endUnit() = 0;
    /// Ends the unit that is open with nothing of it kept. Without one it does nothing.
    virtual void dropUnit() noexcept = 0;
};

/// Tells a sleeper that there may be new commits in a store, whoever made them. One thread.
class CommitWatch {
public:
    virtual ~CommitWatch() = default;
    /// Readable from a commit on until `clear`; now and then for nothing.
    virtual int fd() const = 0;
    /// To be called before looking for what is new.
    virtual void clear() = 0;
};

/// A store: makes an engine object for each thread that uses it.
class RecordStore {
public:
    virtual ~RecordStore() = default;
    /// Null when the store cannot be used, the reason left with setStoreError.
    virtual std::unique_ptr<RecordEngine> connect() = 0;
    /// Sees every commit made from now on. Null when the system has no watch left, the reason left with
    /// setStoreError.
    virtual std::unique_ptr<CommitWatch> watchCommits() = 0;
};

/// How a store on disk is used.
struct StoreOptions {
    std::chrono::milliseconds writerWait{10'000};  ///< How long a writer waits for another.
    bool fullDurability = true;                    ///< False trades the last moments before a power cut for speed.
    bool sharedFolder = false;                     ///< A store in a folder that others may write to is used as well.
};

/// A store in one SQLite file, made (0600, its folder 0700) when there is none, with an engine's
/// collation fixed at that moment to `locale`. A file that is not a store, is damaged, has a newer format, or
/// is in a folder that others may write to, is refused and left untouched. Null on failure, the reason left with
/// setStoreError.
std::unique_ptr<RecordStore> openSqliteStore(const std::filesystem::path& file, const StoreOptions& options,
                                             const std::string& locale);

/// A store in memory, gone when the object and all engines made by it are.
std::unique_ptr<RecordStore> openMemoryStore(const std::string& locale, const StoreOptions& options = {});

}  // namespace Platform
