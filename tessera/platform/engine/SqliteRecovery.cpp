#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <utility>

#include "tessera/platform/base/Unicode.h"
#include "tessera/platform/engine/ContactNumbers.h"
#include "tessera/platform/engine/SqliteCounters.h"
#include "tessera/platform/engine/SqliteEngine.h"
#include "tessera/platform/engine/SqliteFormat.h"
#include "tessera/platform/engine/SqlitePages.h"
#include "tessera/platform/engine/SqlitePlace.h"
#include "tessera/platform/engine/StoreFile.h"
#include "tessera/platform/engine/StoreRules.h"

// What is left of a damaged store, and a new store made of it. A row is known by its shape alone: no two tables of a
// store have rows of the same kinds of values.

namespace Platform {
namespace {

using Values = std::vector<SqliteValue>;
using Blob = std::string;

template <class Kind>
const Kind& valueAt(const Values& values, std::size_t column) {
    return std::get<Kind>(values[column]);
}

/// Whether the values are of those kinds: 0 none (which is how a row's identifier is written), i, t, b.
bool haveShape(const Values& values, std::string_view kinds) {
    constexpr std::string_view kindOfIndex = "0itb";
    return values.size() == kinds.size() &&
           std::equal(values.begin(), values.end(), kinds.begin(),
                      [&](const SqliteValue& value, char kind) { return kindOfIndex[value.index()] == kind; });
}

struct FoundDatabase {
    WString name;
    DWORD type = 0;
    std::vector<SortOrder> declared;
    std::uint64_t counted = 0;  ///< How many records it says that it has.
    std::uint64_t modified = 0;
    std::uint64_t records = 0;  ///< How many were found.
    std::uint64_t bytes = 0;
    bool rowLost = false;  ///< Then its orders are what is in use, and what it counted is not known.
    bool nameLost = false;
};

/// Everything in a damaged file that reads as part of a store.
class Remains {
public:
    explicit Remains(SqlitePages& pages) {
        pages.forEachRow([this](std::int64_t id, const Values& values) { take(id, values); });
        for (const auto& [row, change] : changes_) {
            if (change.deleted) records.erase(row);  // a page given up may hold them still
        }
        for (const auto& [id, name] : indexedNames_)
            databaseOf(id);
        for (CEOID id = 1; id <= systemDatabases.size(); ++id)
            databaseOf(id);
        for (const auto& [row, packed] : records) {
            FoundDatabase& database = databaseOf(static_cast<CEOID>(row >> 32));
            ++database.records;
            database.bytes += packed.size();
        }
    }

    bool empty() const {
        return records.empty() && std::all_of(databases.begin(), databases.end(),
                                              [](const auto& database) { return database.second.rowLost; });
    }
    /// The first identifier that nothing has.
    std::uint64_t nextId() const {
        std::uint64_t highest = databases.empty() ? 0 : databases.rbegin()->first;
        for (const auto& [row, packed] : records)
            highest = std::max<std::uint64_t>(highest, recordOfRow(row));
        const bool believable = nextId_ > highest && nextId_ <= lastIdentifier;
        return believable ? nextId_ : highest + 1;
    }

    std::map<std::int64_t, Blob> records;
    std::map<CEOID, FoundDatabase> databases;
    std::optional<std::string> locale;
    std::uint64_t damagedRecords = 0;

private:
    struct LastChange {
        std::int64_t sequence = 0;
        bool deleted = false;
    };

    void take(std::int64_t id, const Values& values) {
        if (haveShape(values, "0b")) takeRecord(id, valueAt<Blob>(values, 1));
        if (haveShape(values, "0bbibiiii")) takeDatabase(id, values);
        if (haveShape(values, "0iiii")) takeOrder(values);
        if (haveShape(values, "0iiiii")) takeChange(id, values);
        if (haveShape(values, "bi") && idIn(values, 1) != 0)
            indexedNames_[idIn(values, 1)] = unpackedText(valueAt<Blob>(values, 0));
        if (haveShape(values, "0iitt")) {
            nextId_ = static_cast<std::uint64_t>(valueAt<std::int64_t>(values, 1));
            locale = valueAt<SqliteText>(values, 3).bytes;
        }
    }

    void takeRecord(std::int64_t row, const Blob& packed) {
        const bool identified = row >> 32 > 0 && recordOfRow(row) != 0 && recordOfRow(row) <= lastIdentifier;
        if (identified && wholeRecord(packed)) {
            records.try_emplace(row, packed);
        } else {
            ++damagedRecords;
        }
    }

    void takeDatabase(std::int64_t id, const Values& values) {
        if (id <= 0 || id > static_cast<std::int64_t>(lastIdentifier)) return;
        FoundDatabase found;
        found.name = keptName(unpackedText(valueAt<Blob>(values, 1)));
        found.type = static_cast<DWORD>(valueAt<std::int64_t>(values, 3));
        for (const SortOrder& order : unpackOrders(valueAt<Blob>(values, 4))) {
            if (order.property != 0 && hasOrder(order.property)) found.declared.push_back(order);
        }
        found.counted = static_cast<std::uint64_t>(valueAt<std::int64_t>(values, 5));
        found.modified = static_cast<std::uint64_t>(valueAt<std::int64_t>(values, 7));
        if (checkNewDatabase(found.name, found.declared) != ERROR_SUCCESS) return;
        if (names_.insert(foldedName(found.name)).second) databases.insert_or_assign(static_cast<CEOID>(id), found);
    }

    void takeChange(std::int64_t sequence, const Values& values) {
        const std::int64_t row = rowOf(static_cast<CEOID>(valueAt<std::int64_t>(values, 1)),
                                       static_cast<CEOID>(valueAt<std::int64_t>(values, 2)));
        LastChange& last = changes_[row];
        if (sequence < last.sequence) return;
        last = {sequence, valueAt<std::int64_t>(values, 3) == static_cast<std::int64_t>(ChangeKind::deleted)};
    }

    void takeOrder(const Values& values) {
        const SortOrder order{idIn(values, 2), idIn(values, 3)};
        if (hasOrder(order.property)) orders_[idIn(values, 1)].push_back(order);
    }

    static DWORD idIn(const Values& values, std::size_t column) {
        return static_cast<DWORD>(valueAt<std::int64_t>(values, column));
    }

    FoundDatabase& databaseOf(CEOID id) {
        const auto [place, isNew] = databases.try_emplace(id);
        if (isNew) place->second = withoutRow(id);
        return place->second;
    }

    /// One whose own row is lost: the index still has its name, in upper case, which is as good for finding it.
    FoundDatabase withoutRow(CEOID id) {
        FoundDatabase database;
        database.rowLost = true;
        if (id <= systemDatabases.size()) {
            database.name = systemDatabases[id - 1].name;
        } else if (const auto name = indexedNames_.find(id); name != indexedNames_.end()) {
            database.name = keptName(name->second);
        }
        const auto orders = orders_.find(id);
        if (orders != orders_.end()) database.declared = orders->second;
        if (database.declared.size() > maxDeclaredOrders) database.declared.resize(maxDeclaredOrders);
        if (!database.name.empty() && names_.insert(foldedName(database.name)).second) return database;
        const std::string name = "Recovered " + std::to_string(id);
        database.name.assign(name.begin(), name.end());
        database.nameLost = true;
        return database;
    }

    std::map<CEOID, WString> indexedNames_;
    std::map<CEOID, std::vector<SortOrder>> orders_;
    std::uint64_t nextId_ = 0;
    std::set<WString> names_;
    std::map<std::int64_t, LastChange> changes_;
};

void write(SqliteConnection& connection, const Remains& remains) {
    runSql(connection, Sql::begin);
    std::set<CEOID> contacts;
    for (const auto& [id, database] : remains.databases) {
        if (keepsNumbers(database.name)) contacts.insert(id);
        const std::uint64_t modified = ticksAfter(database.modified);
        runSql(connection, Sql::insertDatabase, id, packedText(database.name), packedText(foldedName(database.name)),
               database.type, packOrders(database.declared), modified);
        runSql(connection, Sql::writeDatabase, database.records, database.bytes, modified, std::uint64_t{1}, id);
    }
    for (const auto& [row, packed] : remains.records) {
        runSql(connection, Sql::insertRecord, row, packed);
        if (!contacts.contains(static_cast<CEOID>(row >> 32))) continue;
        for (const std::string& number : reducedNumbers(packed))
            runSql(connection, Sql::insertNumber, number, row);
    }
    runSql(connection, Sql::writeStore, remains.nextId(), std::uint64_t{0});
    runSql(connection, Sql::commit);
}

/// Makes the keys of the declared orders; others are made when they are asked for.
void sort(SqliteEngine& engine, const Remains& remains) {
    const auto require = [](DWORD error) {
        if (error != ERROR_SUCCESS) throw SqliteFailure{error, storeErrorText()};
    };
    require(engine.beginUnit());
    for (const auto& [id, database] : remains.databases) {
        for (const SortOrder& order : database.declared) {
            OrderId made = 0;
            require(engine.openOrder(id, order, made));
        }
    }
    require(engine.endUnit());
}

void fill(const std::filesystem::path& made, const Remains& remains, const std::string& locale) {
    auto connection = std::make_unique<SqliteConnection>(made, StoreOptions().writerWait);
    createTables(*connection, SortKeys(locale), locale);
    write(*connection, remains);
    SqliteEngine engine(std::move(connection), locale);
    sort(engine, remains);
}

StoreRecovery account(const Remains& remains, std::uint64_t unreadablePages) {
    StoreRecovery recovery;
    recovery.records = remains.records.size();
    recovery.databases = remains.databases.size();
    if (!remains.locale) recovery.losses.emplace_back("the language that texts are sorted by: it is now the user's");
    if (unreadablePages != 0)
        recovery.losses.push_back("the disk does not give " + std::to_string(unreadablePages) + " of its pages");
    if (remains.damagedRecords != 0)
        recovery.losses.push_back("records that are damaged themselves: " + std::to_string(remains.damagedRecords));
    for (const auto& [id, database] : remains.databases) {
        const std::string name = "\"" + utf8Of(database.name) + "\"";
        if (database.nameLost) recovery.losses.push_back("the name of a database: its records are now in " + name);
        if (database.rowLost)
            recovery.losses.push_back("what database " + name + " says of itself: some of its records may be lost");
        if (database.records < database.counted)
            recovery.losses.push_back("database " + name + ": " + std::to_string(database.counted - database.records) +
                                      " of " + std::to_string(database.counted) + " records");
    }
    return recovery;
}

}  // namespace

DWORD recoverSqliteStore(const std::filesystem::path& damaged, const StoreOptions& options,
                         const std::filesystem::path& to, const std::string& locale, StoreRecovery& recovery) {
    StorePlace place;
    if (const DWORD error = findStorePlace(damaged, options, WhenMissing::fail, place)) return error;
    try {
        SqliteConnection connection(place.file, options.writerWait);
        SqlitePages pages(connection);
        const Remains remains(pages);
        if (remains.empty())
            return setStoreError(ERROR_BAD_FORMAT, nameOf(place.file) + ": nothing in it is of a Tessera store");
        const DWORD error = makeStoreFile(
            to, [&](const std::filesystem::path& made) { fill(made, remains, remains.locale.value_or(locale)); });
        if (error == ERROR_SUCCESS) recovery = account(remains, pages.unreadable());
        return error;
    } catch (const SqliteFailure& failure) {
        return setStoreError(failure.error, failure.text);
    }
}

}  // namespace Platform
