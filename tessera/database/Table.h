#pragma once

#include "tessera/Export.h"
#include "tessera/database/schema/RecordDef.h"
#include "tessera/platform/base/Results.h"
#include "tessera/platform/objectstore/CCeDBRecord.h"

class CWnd;

/// Tables and cursors: one way to work on record databases and on the collection of contacts.
namespace Database {

class Iterator;

/// A table of typed attributes, whatever store it is in. This base answers for a table that can do nothing.
///
/// It borrows its schema, which outlives it. The order of the virtual operations is part of the interface.
/// One thread, and one operation of a table or of its iterators at a time.
class TESSERA_API Table {
public:
    /// A table of that name and schema; the schema is borrowed and may be null.
    Table(const WCHAR* tableName, const RecordDef* def);
    Table(const Table&) = default;
    Table& operator=(const Table&) = default;
    virtual ~Table();

    /// Makes the table's database. @return its object identifier, 0 on failure.
    virtual DWORD create();
    /// Opens the table; the window, unless it is null, receives its change notifications.
    virtual BOOL open(CWnd* notifyWnd);
    /// Closes the table. FALSE when it was not open.
    virtual BOOL close();
    /// Removes the table with all its records.
    virtual BOOL drop();
    /// True between a successful open and close.
    virtual bool isOpen();

    /// Bytes of all records; 0 when the table is not open.
    virtual DWORD getSize();
    /// How many records there are; 0 when the table is not open.
    virtual DWORD getNumRecords();
    /// The object identifier of the table itself; 0 when it has none.
    virtual DWORD getCEOID();
    /// The name that the table was made with.
    virtual CString& getName();

    /// @{
    /// The schema, borrowed, and how many attributes it has.
    virtual RecordDef* getRecordDef();
    virtual int getNumAttrs();
    /// @}
    /// @{
    /// An attribute by its index, its name, and the ident of its property. The index is not checked.
    virtual AttrDef* getAttrDef(int i);
    virtual CString& getAttrName(int i);
    virtual WORD getAttrIdent(int i);
    /// @}

    /// @{
    /// A cursor over the table, or over part of it (see the kinds of iterator), which the caller deletes
    /// before the table; null on failure. The properties are borrowed and must outlive it.
    virtual Iterator* getIterator(int sortIdx, CCeDBProp* p1, CCeDBProp* p2);
    virtual Iterator* getIterator(CCeDBProp* p1, CCeDBProp* p2);
    /// @}

    /// Adds a record; `newOid` receives its object identifier.
    [[nodiscard]] virtual HRESULT insertRecord(CCeDBRecord* rec, DWORD& newOid);
    /// Adds a record of the first `getNumAttrs` properties of the array.
    [[nodiscard]] virtual HRESULT insertRecord(CCeDBProp props[], DWORD& newOid);
    /// Adds a record of sample values.
    [[nodiscard]] virtual HRESULT insertRecord();

    /// @{
    /// Deletes the first record with that property, the one with that identifier, or all.
    [[nodiscard]] virtual HRESULT deleteRecord(CCeDBProp& key);
    [[nodiscard]] virtual HRESULT deleteRecord(DWORD& oid);
    [[nodiscard]] virtual HRESULT deleteAllRecords();
    /// @}

    /// Writes the properties of `rec` into an existing record.
    [[nodiscard]] virtual HRESULT updateRecord(DWORD oid, CCeDBRecord* rec, int attrIdx, CCeDBProp* prop);

    /// @{
    /// Finds the first record with that property, and reads it unless `rec` is null. The first form also tells its
    /// identifier.
    [[nodiscard]] virtual HRESULT queryRecord(CCeDBProp& key, DWORD* oid, CCeDBRecord* rec);
    [[nodiscard]] virtual HRESULT queryRecord(CCeDBProp& key, CCeDBRecord* rec);
    /// @}

    /// @{
    /// The same as the forms above for a caller who does not want the new identifier.
    [[nodiscard]] HRESULT insertRecord(CCeDBProp props[]);
    [[nodiscard]] HRESULT insertRecord(CCeDBRecord* rec);
    /// @}

private:
    CString name_;
    const RecordDef* recordDef_;
};

}  // namespace Database
