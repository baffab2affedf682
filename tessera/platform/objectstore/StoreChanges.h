#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "tessera/Export.h"
#include "tessera/platform/base/Types.h"

// For whoever keeps a copy of a database in memory: to read all of it once, and then only what changed.

/// One text of a record.
struct TextProperty {
    CEPROPID id = 0;   ///< The property.
    WStringView text;  ///< A zero stands behind it.
};

/// A record as a reader shows it: its texts, in the order in which they were first written. Whatever it
/// shows is valid during the call that it is passed to.
class RecordView {
public:
    /// Shows what it is given, all borrowed.
    RecordView(CEOID oid, std::string_view sortKey, std::span<const TextProperty> texts)
        : oid_(oid), sortKey_(sortKey), texts_(texts) {}

    CEOID oid() const { return oid_; }  ///< The record's identifier.
    /// Records are in the order of (sort key, identifier), keys compared as bytes.
    std::string_view sortKey() const { return sortKey_; }
    /// All texts that the record has.
    std::span<const TextProperty> texts() const { return texts_; }
    /// Nothing when the record lacks the property: an empty text is something.
    std::optional<WStringView> text(CEPROPID id) const {
        for (const TextProperty& property : texts_) {
            if (property.id == id) return property.text;
        }
        return std::nullopt;
    }

private:
    CEOID oid_;
    std::string_view sortKey_;
    std::span<const TextProperty> texts_;
};

/// A moment in the life of the store. Two equal ones: nothing was written in between, by anybody, and
/// nothing that was written has been undone.
struct StoreStamp {
    std::uint64_t session = 0;         ///< Each thread has its own, and another one for another store.
    std::uint64_t commits = 0;         ///< How often anybody has written to the store.
    std::uint64_t writes = 0;          ///< How often the thread has written since.
    std::uint64_t givenUpBatches = 0;  ///< How often what was written has been given up.

    /// The same moment.
    friend bool operator==(const StoreStamp&, const StoreStamp&) = default;
};

/// One change to a record, as the store's log has it.
struct StoreChange {
    /// What was done.
    enum class Kind { created, deleted, changed };

    CEOID oid = 0;               ///< The record.
    Kind kind = Kind::created;   ///< What was done to it.
    std::uint64_t sequence = 0;  ///< Counts all changes to the store, in the order in which they were committed.
    FILETIME time = {};          ///< When it was written; later with every change to the database.
};

/// What became of the question for changes.
enum class ChangesResult {
    complete,  ///< All changes were told.
    tooOld,    ///< What was read cannot be brought up to date: read all of it anew.
    failed,    ///< The store could not be asked; the last error says why.
};

/// Reads a whole database, and then follows it.
///
/// Any thread may use it, one at a time. It reads what the calling thread would: inside a batch that
/// includes what the batch wrote so far.
class TESSERA_API DatabaseReader {
public:
    /// What is called with each record.
    using Visitor = std::function<void(const RecordView&)>;

    /// The database in the order of one of its texts or numbers, ascending.
    DatabaseReader(const WCHAR* database, CEPROPID sortProperty);
    ~DatabaseReader();
    DatabaseReader(const DatabaseReader&) = delete;
    DatabaseReader& operator=(const DatabaseReader&) = delete;

    /// Cheap. While it stays equal there are no changes to be had.
    StoreStamp stamp() const;
    /// Whether the calling thread is inside a batch: what it reads then, nobody else may see yet.
    bool inBatch() const;

    /// Visits all records in order. `sequence` receives the change from which to follow on: a record that
    /// is written while this reads may be visited before or after that, twice or never, but is then among
    /// the changes. False when the store cannot be read, with the last error set.
    bool readAll(std::uint64_t& sequence, const Visitor& visit);

    /// Visits one record. False with ERROR_KEY_DELETED when it is gone, or with another error.
    bool read(CEOID oid, const Visitor& visit);

    /// Among the contacts one of whose telephone numbers reduces to exactly `number`, in ASCII, the first in the
    /// reader's order. False with ERROR_NO_MORE_ITEMS when nobody has it, or with another error. Many threads may ask
    /// at once.
    bool findNumber(std::string_view number, CEOID& oid) const;

    /// The changes to the database after `sequence`, oldest first, added to `changes`; `sequence` moves on
    /// to the newest change that was looked at.
    ChangesResult changesSince(std::uint64_t& sequence, std::vector<StoreChange>& changes);

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};
