#pragma once

#include <utility>

#include "tessera/database/CeDBTable.h"
#include "tessera/database/Iterator.h"

// What a table and its iterators keep to themselves: that something is there but cannot be read.

namespace PhoneBook {

/// Finds a row by a value that it has, in the order that the table is open in. S_FALSE when there is none; E_FAIL also
/// when there is one and it cannot be read. `row` may be null.
inline HRESULT seekRow(Database::Table& table, CCeDBProp key, DWORD& rowOid, CCeDBRecord* row) {
    if (row != nullptr) row->removeAll();
    const HRESULT sought = table.queryRecord(key, &rowOid, row);
    const bool unread = sought == S_OK && row != nullptr && row->getNumProps() == 0;
    return unread ? E_FAIL : sought;
}

/// Whether there is anything to walk for an iterator that was just made over a table: S_OK, or S_FALSE for an empty
/// table. E_FAIL when there is no iterator, or the table cannot be asked.
inline HRESULT anyRows(Database::CeDBTable& table, Database::Iterator* rows) {
    if (rows == nullptr) return E_FAIL;
    if (rows->getNumItems() != 0) return S_OK;
    return table.getDB() != nullptr && table.getDB()->isEof() ? S_FALSE : E_FAIL;
}

/// Reads the row that an iterator is on. S_FALSE, with `row` empty, when it is gone; E_FAIL when it cannot be read.
inline HRESULT readRow(Database::Iterator& rows, CCeDBRecord& row) {
    constexpr WORD untouched = 0xFFFF;  // no attribute's
    row.removeAll();
    row.addProp(CCeDBProp::ofI2(untouched, 0));
    SetLastError(ERROR_SUCCESS);
    const HRESULT read = rows.getRecord(&row);
    const bool wasRead = read == S_OK && row.findProp(untouched) == nullptr;
    if (wasRead) return S_OK;
    row.removeAll();
    return GetLastError() == ERROR_KEY_DELETED ? S_FALSE : E_FAIL;
}

/// A row's property as an iterator shows it: a row with fewer properties than the table has attributes lacks the last
/// ones.
inline CCeDBProp shownProp(const CCeDBRecord& row, const Database::RecordDef& schema, int attr) {
    return attr < row.getNumProps() ? row.getProp(schema.getAttrIdent(attr)) : CCeDBProp();
}

/// Visits the rows of an iterator that was just made over a table. E_FAIL when there is none, or not all can be read.
template <class Visit>
HRESULT forEachRow(Database::CeDBTable& table, Database::Iterator* rows, Visit&& visit) {
    HRESULT moved = anyRows(table, rows);
    if (moved == S_OK) moved = rows->next();
    CCeDBRecord row;
    for (; moved == S_OK; moved = rows->next()) {
        const HRESULT read = readRow(*rows, row);
        if (FAILED(read)) return read;
        if (read == S_OK) visit(row);
    }
    return moved == S_FALSE ? S_OK : E_FAIL;
}

}  // namespace PhoneBook
