#include "tessera/platform/engine/SqliteStatements.h"

#include <array>

namespace Platform {
namespace {

struct SqlText {
    Sql statement;
    const char* text;
};

// A row of `record` is found by its database's identifier in the high half of its own and the
// record's in the low half. The joins are CROSS or LEFT to keep the walk's index outermost.
constexpr std::array texts{
    SqlText{Sql::beginReading, "BEGIN"},
    SqlText{Sql::begin, "BEGIN IMMEDIATE"},
    SqlText{Sql::commit, "COMMIT"},
    SqlText{Sql::rollback, "ROLLBACK"},
    SqlText{Sql::dataVersion, "PRAGMA data_version"},
    SqlText{Sql::formatVersion, "PRAGMA user_version"},
    SqlText{Sql::insertStore,
            "INSERT INTO store (id, next_id, last_change, locale, collation) "
            "VALUES (1, 1, 0, CAST(? AS TEXT), CAST(? AS TEXT))"},
    SqlText{Sql::readStore, "SELECT next_id, last_change, locale, collation FROM store"},
    SqlText{Sql::writeStore, "UPDATE store SET next_id = ?, last_change = ?"},
    SqlText{Sql::findDatabase, "SELECT id FROM database WHERE folded = ?"},
    SqlText{Sql::readDatabase,
            "SELECT name, type, declared, records, bytes, modified, version FROM database WHERE id = ?"},
    SqlText{Sql::insertDatabase,
            "INSERT INTO database (id, name, folded, type, declared, records, bytes, modified, version) "
            "VALUES (?, ?, ?, ?, ?, 0, 0, ?, 0)"},
    SqlText{Sql::writeDatabase, "UPDATE database SET records = ?, bytes = ?, modified = ?, version = ? WHERE id = ?"},
    SqlText{Sql::deleteDatabase, "DELETE FROM database WHERE id = ?"},
    SqlText{Sql::findOrder, "SELECT id FROM sort_order WHERE database = ? AND property = ? AND flags = ?"},
    SqlText{Sql::readOrder, "SELECT database FROM sort_order WHERE id = ?"},
    SqlText{Sql::ordersOfDatabase, "SELECT id, property, flags, version FROM sort_order WHERE database = ?"},
    SqlText{Sql::textOrders,
            "SELECT id, database, property, flags, version FROM sort_order WHERE property & 0xFFFF = ?"},
    SqlText{Sql::insertOrder,
            "INSERT INTO sort_order (database, property, flags, version) VALUES (?, ?, ?, 0) RETURNING id"},
    SqlText{Sql::writeOrder, "UPDATE sort_order SET version = ? WHERE id = ?"},
    SqlText{Sql::deleteOrders, "DELETE FROM sort_order WHERE database = ?"},
    SqlText{Sql::writeCollation, "UPDATE store SET collation = CAST(? AS TEXT)"},
    SqlText{Sql::readRecord, "SELECT data FROM record WHERE id = ?"},
    SqlText{Sql::recordsOfDatabase, "SELECT id, data FROM record WHERE id BETWEEN ? AND ?"},
    SqlText{Sql::insertRecord, "INSERT INTO record (id, data) VALUES (?, ?)"},
    SqlText{Sql::updateRecord, "UPDATE record SET data = ?2 WHERE id = ?1"},
    SqlText{Sql::deleteRecord, "DELETE FROM record WHERE id = ?"},
    SqlText{Sql::deleteRecords, "DELETE FROM record WHERE id BETWEEN ? AND ?"},
    SqlText{Sql::insertKey, "INSERT INTO sort_key (sort_order, key, record) VALUES (?, ?, ?)"},
    SqlText{Sql::deleteKey, "DELETE FROM sort_key WHERE sort_order = ? AND key = ? AND record = ?"},
    SqlText{Sql::deleteKeys, "DELETE FROM sort_key WHERE sort_order = ?"},
    SqlText{Sql::insertNumber, "INSERT INTO number (number, record) VALUES (CAST(? AS TEXT), ?)"},
    SqlText{Sql::deleteNumber, "DELETE FROM number WHERE number = CAST(? AS TEXT) AND record = ?"},
    SqlText{Sql::deleteNumbers, "DELETE FROM number WHERE record BETWEEN ? AND ?"},
    SqlText{Sql::recordsOfNumber, "SELECT record FROM number WHERE number = CAST(? AS TEXT) ORDER BY record"},
    SqlText{Sql::insertChange,
            "INSERT INTO change (seq, database, record, kind, origin, time) VALUES (?, ?, ?, ?, ?, ?)"},
    SqlText{Sql::insertDeletedChanges,
            "INSERT INTO change (seq, database, record, kind, origin, time) "
            "SELECT ?3 + row_number() OVER (ORDER BY id), ?4, id & 0xFFFFFFFF, ?5, ?6, ?7 "
            "FROM record WHERE id BETWEEN ?1 AND ?2"},
    SqlText{Sql::pruneChanges, "DELETE FROM change WHERE seq <= ?"},
    SqlText{Sql::changesAfter,
            "SELECT seq, database, record, kind, origin, time FROM change WHERE seq > ? ORDER BY seq LIMIT ?"},
    SqlText{Sql::stepForward,
            "SELECT key, record FROM sort_key WHERE sort_order = ?1 AND (key, record) > (?2, ?3) "
            "ORDER BY key, record LIMIT ?4"},
    SqlText{Sql::stepBackward,
            "SELECT key, record FROM sort_key WHERE sort_order = ?1 AND (key, record) < (?2, ?3) "
            "ORDER BY key DESC, record DESC LIMIT ?4"},
    SqlText{Sql::stepForwardReading,
            "SELECT k.key, k.record, r.data FROM sort_key k LEFT JOIN record r ON r.id = ?5 + k.record "
            "WHERE k.sort_order = ?1 AND (k.key, k.record) > (?2, ?3) ORDER BY k.key, k.record LIMIT ?4"},
    SqlText{Sql::stepBackwardReading,
            "SELECT k.key, k.record, r.data FROM sort_key k LEFT JOIN record r ON r.id = ?5 + k.record "
            "WHERE k.sort_order = ?1 AND (k.key, k.record) < (?2, ?3) ORDER BY k.key DESC, k.record DESC LIMIT ?4"},
    SqlText{Sql::createdForward, "SELECT id FROM record WHERE id > ? AND id <= ? ORDER BY id LIMIT ?"},
    SqlText{Sql::createdBackward, "SELECT id FROM record WHERE id < ? AND id >= ? ORDER BY id DESC LIMIT ?"},
    SqlText{Sql::createdForwardReading, "SELECT id, data FROM record WHERE id > ? AND id <= ? ORDER BY id LIMIT ?"},
    SqlText{Sql::createdBackwardReading,
            "SELECT id, data FROM record WHERE id < ? AND id >= ? ORDER BY id DESC LIMIT ?"},
    SqlText{Sql::indexForward,
            "SELECT key, record FROM sort_key WHERE sort_order = ? ORDER BY key, record LIMIT 1 OFFSET ?"},
    SqlText{Sql::indexBackward,
            "SELECT key, record FROM sort_key WHERE sort_order = ? ORDER BY key DESC, record DESC LIMIT 1 OFFSET ?"},
    SqlText{Sql::createdIndexForward, "SELECT id FROM record WHERE id BETWEEN ? AND ? ORDER BY id LIMIT 1 OFFSET ?"},
    SqlText{Sql::createdIndexBackward,
            "SELECT id FROM record WHERE id BETWEEN ? AND ? ORDER BY id DESC LIMIT 1 OFFSET ?"},
    SqlText{Sql::firstEqual, "SELECT record FROM sort_key WHERE sort_order = ? AND key = ? ORDER BY record LIMIT 1"},
    SqlText{Sql::lastEqual,
            "SELECT record FROM sort_key WHERE sort_order = ? AND key = ? ORDER BY record DESC LIMIT 1"},
    SqlText{Sql::equalRecords, "SELECT record FROM sort_key WHERE sort_order = ? AND key = ? ORDER BY record"},
    SqlText{Sql::checkQuickly, "PRAGMA quick_check(20)"},
    SqlText{Sql::checkAll, "PRAGMA integrity_check(20)"},
    SqlText{Sql::allDatabases, "SELECT id FROM database ORDER BY id"},
    SqlText{Sql::highestDatabase, "SELECT max(id) FROM database"},
    SqlText{Sql::highestRecord, "SELECT max(id & 0xFFFFFFFF) FROM record"},
    SqlText{Sql::sizeOfDatabase,
            "SELECT count(*), coalesce(sum(length(data)), 0) FROM record WHERE id BETWEEN ? AND ?"},
    SqlText{Sql::countKeys, "SELECT count(*) FROM sort_key WHERE sort_order = ?"},
    SqlText{Sql::keyThere, "SELECT 1 FROM sort_key WHERE sort_order = ? AND key = ? AND record = ?"},
    SqlText{Sql::countNumbers, "SELECT count(*) FROM number WHERE record BETWEEN ? AND ?"},
    SqlText{Sql::numberThere, "SELECT 1 FROM number WHERE number = CAST(? AS TEXT) AND record = ?"},
    SqlText{Sql::changeLogExtent, "SELECT count(*), min(seq), max(seq) FROM change"},
    SqlText{Sql::unknownChanges, "SELECT count(*) FROM change WHERE kind NOT IN (0x401, 0x403, 0x406)"},
    SqlText{Sql::strayRecords, "SELECT count(*) FROM record WHERE id >> 32 NOT IN (SELECT id FROM database)"},
    SqlText{Sql::strayOrders, "SELECT count(*) FROM sort_order WHERE database NOT IN (SELECT id FROM database)"},
    SqlText{Sql::strayKeys, "SELECT count(*) FROM sort_key WHERE sort_order NOT IN (SELECT id FROM sort_order)"},
    SqlText{Sql::strayNumbers, "SELECT count(*) FROM number WHERE record >> 32 NOT IN (SELECT id FROM database)"},
};

constexpr bool inOrder() {
    for (std::size_t i = 0; i < texts.size(); ++i) {
        if (static_cast<std::size_t>(texts[i].statement) != i) return false;
    }
    return texts.size() == static_cast<std::size_t>(Sql::count);
}
static_assert(inOrder(), "a statement's text stands at its place");

}  // namespace

const char* textOf(Sql statement) {
    return texts[static_cast<std::size_t>(statement)].text;
}

}  // namespace Platform
