#pragma once

#include <memory>

#include "tessera/Export.h"
#include "tessera/database/Table.h"
#include "tessera/platform/base/Collections.h"
#include "tessera/platform/objectstore/CCeDBDatabase.h"

namespace Database {

/// A table over one property database of the object store, known by its name.
///
/// Nothing is open to begin with: `create` makes the database, `open` opens one that exists. The place in
/// the database is shared with the table's iterators, so only one of them may be moved at a time. Record
/// operations of a table that is not open answer E_FAIL. One thread.
class TESSERA_API CeDBTable : public Table {
public:
    /// The table in the database of that name; nothing is opened. The schema is borrowed.
    CeDBTable(const WCHAR* tableName, const RecordDef* def);
    CeDBTable(const CeDBTable&) = delete;
    CeDBTable& operator=(const CeDBTable&) = delete;
    ~CeDBTable() override;

    /// Makes the database, with an order for each of the first four attributes that have sort flags. It is
    /// not opened.
    /// @return the new database's object identifier; 0 on failure, as when there is one of that name.
    DWORD create() override;

    /// Opens in the database's own order. TRUE, with nothing changed, when it is open already.
    BOOL open(CWnd* notifyWnd) override;
    /// Opens in the order of one attribute, with the flags CEDB_SORT_*.
    BOOL open(WORD attrIdx, WORD sortFlags, CWnd* notifyWnd);
    /// Opens anew, in the order of one attribute and without a notification window, whether it was open or not. On
    /// failure it stays as it was, unless the database is gone.
    BOOL reopen(WORD attrIdx);
    /// FALSE when it was not open.
    BOOL close() override;
    /// Removes the database from the store, opening it first if need be. FALSE when there is none.
    BOOL drop() override;
    /// True between a successful open and close.
    bool isOpen() override;

    DWORD getSize() override;
    /// The low 16 bits of the count: a table is meant for 65,535 records at most.
    DWORD getNumRecords() override;
    DWORD getCEOID() override;
    /// The database object, which the table owns; null before `create` or `open` and after `drop`.
    CCeDBDatabase* getDB() { return db_.get(); }

    /// @{
    /// A new CeDBIterator with these arguments.
    Iterator* getIterator(int sortIdx, CCeDBProp* p1, CCeDBProp* p2) override;
    Iterator* getIterator(CCeDBProp* p1, CCeDBProp* p2) override;
    /// @}

    /// @return S_OK; E_FAIL when not open, `rec` is null, or the store takes no such record.
    using Table::insertRecord;
    [[nodiscard]] HRESULT insertRecord(CCeDBRecord* rec, DWORD& newOid) override;
    [[nodiscard]] HRESULT insertRecord(CCeDBProp props[], DWORD& newOid) override;
    /// Adds a record of the first `getNumAttrs` properties of an array of CCeDBProp, passing over null ones.
    [[nodiscard]] HRESULT insertRecord(CObArray& props, DWORD& newOid);
    /// Adds one recognisable record: a fixed value of each attribute's type.
    [[nodiscard]] HRESULT insertRecord() override;

    /// Deletes the first record whose property equals `key`. S_FALSE when there is none.
    [[nodiscard]] HRESULT deleteRecord(CCeDBProp& key) override;
    /// Deletes a record; 0 stands for the one last reached.
    /// @return S_OK; E_FAIL when not open or there is no such record.
    [[nodiscard]] HRESULT deleteRecord(DWORD& oid) override;
    /// Deletes record by record, as one unit of the store. S_OK when there was none to delete.
    [[nodiscard]] HRESULT deleteAllRecords() override;

    /// Writes the properties of `rec`, and `prop` unless it is null, into a record; 0 stands for the one
    /// last reached. The record's other properties stay. `attrIdx` is not consulted.
    /// @return S_OK; E_FAIL when not open, `rec` is null, or there is no such record.
    [[nodiscard]] HRESULT updateRecord(DWORD oid, CCeDBRecord* rec, int attrIdx, CCeDBProp* prop) override;

    /// Reads a record.
    /// @return S_OK, with `rec` untouched when there is no such record; S_FALSE when it cannot be read;
    ///         E_FAIL when not open or `rec` is null.
    [[nodiscard]] HRESULT getRecord(DWORD& oid, CCeDBRecord* rec);

    /// @{
    /// Finds the first record, in the order the table was opened in, whose property equals `key`, and
    /// reads it unless `rec` is null.
    /// @return S_OK; S_FALSE, with `*oid` 0, when there is none; E_FAIL when not open or the store cannot be
    ///         searched; E_POINTER when `oid` is null.
    [[nodiscard]] HRESULT queryRecord(CCeDBProp& key, DWORD* oid, CCeDBRecord* rec) override;
    [[nodiscard]] HRESULT queryRecord(CCeDBProp& key, CCeDBRecord* rec) override;
    /// @}

private:
    BOOL openSortedBy(const CCeDBProp* sort, CWnd* notifyWnd);
    HRESULT add(const CCeDBRecord& record, DWORD& newOid);
    HRESULT deleteEach(Iterator& records);
    CCeDBProp sampleOf(const AttrDef& attribute);

    std::unique_ptr<CCeDBDatabase> db_;
};

}  // namespace Database
