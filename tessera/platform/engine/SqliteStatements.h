#pragma once

#include <cstddef>

namespace Platform {

/// Every statement of the SQLite engine; a connection prepares each once, when it is first used.
enum class Sql : std::size_t {
    beginReading,
    begin,
    commit,
    rollback,
    dataVersion,
    insertStore,
    readStore,
    writeStore,
    findDatabase,
    readDatabase,
    insertDatabase,
    writeDatabase,
    deleteDatabase,
    findOrder,
    readOrder,
    ordersOfDatabase,
    textOrders,
    insertOrder,
    writeOrder,
    deleteOrders,
    writeCollation,
    readRecord,
    recordsOfDatabase,
    insertRecord,
    updateRecord,
    deleteRecord,
    deleteRecords,
    insertKey,
    deleteKey,
    deleteKeys,
    insertChange,
    insertDeletedChanges,
    pruneChanges,
    changesAfter,
    stepForward,
    stepBackward,
    stepForwardReading,
    stepBackwardReading,
    createdForward,
    createdBackward,
    createdForwardReading,
    createdBackwardReading,
    indexForward,
    indexBackward,
    createdIndexForward,
    createdIndexBackward,
    firstEqual,
    lastEqual,
    equalRecords,
    count,
};

/// The statement's text.
const char* textOf(Sql statement);

}  // namespace Platform
