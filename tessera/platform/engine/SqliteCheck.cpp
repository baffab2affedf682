#include <algorithm>
#include <cstdint>
#include <sstream>

#include "tessera/platform/base/Unicode.h"
#include "tessera/platform/engine/ContactNumbers.h"
#include "tessera/platform/engine/SqliteCounters.h"
#include "tessera/platform/engine/SqliteEngine.h"
#include "tessera/platform/engine/SqliteFormat.h"
#include "tessera/platform/engine/SqlitePlace.h"
#include "tessera/platform/engine/StoreFile.h"
#include "tessera/platform/engine/StoreRules.h"

// What a sound store's tables say of each other (docs/storage-format.md), looked at in one moment.

namespace Platform {
namespace {

/// "3 records", "1 record".
std::string spell(std::uint64_t count, std::string_view thing) {
    return std::to_string(count).append(" ").append(thing).append(count == 1 ? "" : "s");
}

class StoreCheck {
public:
    StoreCheck(SqliteConnection& connection, CheckDepth depth, std::vector<std::string>& findings)
        : connection_(connection), counters_(connection), depth_(depth), findings_(findings) {}

    void run() {
        examine([&] { structure(); });
        examine([&] { identifiers(); });
        examine([&] { changeLog(); });
        examine([&] { strays(); });
        examine([&] {
            for (const CEOID database : databases())
                examine([&] { this->database(database); });
        });
    }

private:
    void find(std::string sentence) { findings_.push_back(std::move(sentence)); }

    /// Damage ends a step, not the examination.
    template <class Step>
    void examine(Step&& step) {
        try {
            step();
        } catch (const SqliteFailure& failure) {
            if (failure.error != ERROR_FILE_CORRUPT) throw;
            if (!unreadable_) find("some of the store cannot be read");
            unreadable_ = true;
        }
    }

    void structure();
    void identifiers();
    void changeLog();
    void strays();
    std::vector<CEOID> databases();
    void database(CEOID id);
    void orders(const DatabaseState& state, const std::string& name);
    void records(const DatabaseState& state, const std::string& name);
    void numbers(const DatabaseState& state, const std::string& name);

    std::uint64_t number(Sql statement) {
        SqliteQuery row(connection_, statement);
        return row.step() ? row.natural(0) : 0;
    }
    template <class... Arguments>
    bool exists(Sql statement, const Arguments&... arguments) {
        return SqliteQuery(connection_, statement, arguments...).step();
    }

    SqliteConnection& connection_;
    SqliteCounters counters_;
    CheckDepth depth_;
    std::vector<std::string>& findings_;
    bool unreadable_ = false;
};

void StoreCheck::structure() {
    SqliteQuery row(connection_, depth_ == CheckDepth::full ? Sql::checkAll : Sql::checkQuickly);
    while (row.step()) {
        std::istringstream lines{std::string(row.bytes(0))};
        for (std::string line; std::getline(lines, line);) {
            if (line != "ok" && !line.starts_with("***")) find("the file's structure: " + line);
        }
    }
}

void StoreCheck::identifiers() {
    const std::uint64_t highest = std::max(number(Sql::highestRecord), number(Sql::highestDatabase));
    const std::uint64_t next = counters_.store().nextId;
    if (next > highest && next <= lastIdentifier + 1) return;
    find("the next identifier is " + std::to_string(next) + ", but " + std::to_string(highest) + " is in use");
}

void StoreCheck::changeLog() {
    const std::uint64_t last = counters_.store().lastChange;
    SqliteQuery row(connection_, Sql::changeLogExtent);
    row.step();
    const std::uint64_t count = row.natural(0);
    if (row.natural(2) != (count == 0 ? 0 : last))
        find("the change log ends at " + std::to_string(row.natural(2)) + " instead of " + std::to_string(last));
    if (count != 0 && row.natural(2) - row.natural(1) + 1 != count) find("the change log has gaps");
    if (const std::uint64_t wrong = number(Sql::unknownChanges)) find(spell(wrong, "change") + " of no known kind");
}

void StoreCheck::strays() {
    if (const std::uint64_t count = number(Sql::strayRecords)) find(spell(count, "record") + " of no database");
    if (const std::uint64_t count = number(Sql::strayOrders)) find(spell(count, "sort order") + " of no database");
    if (const std::uint64_t count = number(Sql::strayKeys)) find(spell(count, "sort key") + " of no sort order");
    if (!hasNumberTable(connection_)) return;
    if (const std::uint64_t count = number(Sql::strayNumbers))
        find(spell(count, "telephone number") + " of no database");
}

std::vector<CEOID> StoreCheck::databases() {
    std::vector<CEOID> ids;
    for (SqliteQuery row(connection_, Sql::allDatabases); row.step();)
        ids.push_back(row.dword(0));
    return ids;
}

void StoreCheck::database(CEOID id) {
    const DatabaseState* state = counters_.find(id);
    if (state == nullptr) throw connection_.damage();
    const DatabaseInfo& info = state->info;
    const std::string name = "database \"" + utf8Of(info.name) + "\": ";
    const WString folded = foldedName(info.name);
    CEOID named = 0;
    for (SqliteQuery row(connection_, Sql::findDatabase, packedText(folded)); row.step();)
        named = row.dword(0);
    if (named != id || info.name.empty() || keptName(info.name) != info.name)
        find(name + "it is not found by its name");
    {
        SqliteQuery row(connection_, Sql::sizeOfDatabase, rowOf(id, noRecordBefore), rowOf(id, noRecordAfter));
        row.step();
        if (row.natural(0) != info.records)
            find(name + spell(row.natural(0), "record") + ", but it counts " + std::to_string(info.records));
        if (row.natural(1) != info.bytes)
            find(name + spell(row.natural(1), "byte") + ", but it counts " + std::to_string(info.bytes));
    }
    orders(*state, name);
    if (depth_ != CheckDepth::full) return;
    records(*state, name);
    if (state->keepsNumbers && hasNumberTable(connection_)) numbers(*state, name);
}

void StoreCheck::orders(const DatabaseState& state, const std::string& name) {
    for (const SortOrder& declared : state.info.declaredOrders) {
        const SortOrder wanted = canonicalOrder(declared);
        const bool kept = wanted.property == 0 || std::any_of(state.orders.begin(), state.orders.end(),
                                                              [&](const KeptOrder& k) { return k.order == wanted; });
        if (!kept) find(name + "a declared sort order is missing");
    }
    SqliteQuery records(connection_, Sql::sizeOfDatabase, rowOf(state.info.id, noRecordBefore),
                        rowOf(state.info.id, noRecordAfter));
    records.step();
    for (const KeptOrder& kept : state.orders) {
        SqliteQuery keys(connection_, Sql::countKeys, kept.id);
        keys.step();
        if (keys.natural(0) == records.natural(0)) continue;
        find(name + "a sort order has " + spell(keys.natural(0), "key") + " for " +
             spell(records.natural(0), "record"));
    }
}

void StoreCheck::records(const DatabaseState& state, const std::string& name) {
    const StoreState& store = counters_.store();
    const SortKeys keys(store.locale);
    // Keys of another version of the collation are made anew when a program opens the store to use it.
    const bool textKeysHold = store.collation == keys.version();
    std::uint64_t broken = 0;
    std::uint64_t misplaced = 0;
    SqliteQuery row(connection_, Sql::recordsOfDatabase, rowOf(state.info.id, noRecordBefore),
                    rowOf(state.info.id, noRecordAfter));
    while (row.step()) {
        const std::string_view packed = row.bytes(1);
        if (!wholeRecord(packed)) {
            ++broken;
            continue;
        }
        for (const KeptOrder& kept : state.orders) {
            if (kindOf(kept.order.property) == kindText && !textKeysHold) continue;
            const std::string key = keys.keyOfRecord(kept.order, packed);
            if (!exists(Sql::keyThere, kept.id, key, recordOfRow(row.integer(0)))) ++misplaced;
        }
    }
    if (broken != 0) find(name + spell(broken, "record") + " that cannot be read");
    if (misplaced != 0) find(name + spell(misplaced, "record") + " at a wrong place in a sort order");
}

void StoreCheck::numbers(const DatabaseState& state, const std::string& name) {
    const std::int64_t first = rowOf(state.info.id, noRecordBefore);
    const std::int64_t last = rowOf(state.info.id, noRecordAfter);
    std::uint64_t held = 0;
    std::uint64_t missing = 0;
    for (SqliteQuery row(connection_, Sql::recordsOfDatabase, first, last); row.step();) {
        if (!wholeRecord(row.bytes(1))) continue;
        for (const std::string& number : reducedNumbers(row.bytes(1))) {
            ++held;
            if (!exists(Sql::numberThere, number, row.integer(0))) ++missing;
        }
    }
    SqliteQuery row(connection_, Sql::countNumbers, first, last);
    row.step();
    if (missing != 0) find(name + spell(missing, "telephone number") + " that nobody is found by");
    if (row.natural(0) > held - missing)
        find(name + spell(row.natural(0) - (held - missing), "telephone number") + " that nobody has");
}

[[nodiscard]] DWORD check(const std::filesystem::path& file, const StoreOptions& options, CheckDepth depth,
                          std::vector<std::string>& findings) {
    SqliteConnection connection(file, options.writerWait);
    checkStoreFile(connection);
    configureToLook(connection);
    const SqliteSnapshot snapshot(connection);
    StoreCheck(connection, depth, findings).run();
    return ERROR_SUCCESS;
}

}  // namespace

DWORD checkSqliteStore(const std::filesystem::path& file, const StoreOptions& options, CheckDepth depth,
                       std::vector<std::string>& findings) {
    findings.clear();
    StorePlace place;
    if (const DWORD error = findStorePlace(file, options, WhenMissing::fail, place)) return error;
    try {
        return check(place.file, options, depth, findings);
    } catch (const SqliteFailure& failure) {
        if (failure.error != ERROR_FILE_CORRUPT) return setStoreError(failure.error, failure.text);
        findings.emplace_back("the file cannot be read as a store: it is damaged from its beginning, or cut short");
        return ERROR_SUCCESS;
    }
}

DWORD backUpSqliteStore(const std::filesystem::path& file, const StoreOptions& options,
                        const std::filesystem::path& to) {
    StorePlace place;
    if (const DWORD error = findStorePlace(file, options, WhenMissing::fail, place)) return error;
    return makeStoreFile(to, [&](const std::filesystem::path& made) {
        SqliteConnection source(place.file, options.writerWait);
        checkStoreFile(source);
        configureToLook(source);
        SqliteConnection target(made, options.writerWait);
        target.run("PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF");  // it is made durable as a whole
        source.copyTo(target);
    });
}

}  // namespace Platform
