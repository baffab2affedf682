#pragma once

#include "tessera/Export.h"
#include "tessera/database/Iterator.h"

class CCeDBDatabase;

namespace Database {

/// A cursor over one open property database, in the order its table was opened in.
///
/// Made by CeDBTable::getIterator and owned by the caller, who deletes it before the table. It has no
/// place of its own in the database: it moves its table's, so only one iterator of a table may be moved at
/// a time. What is called its index is a count of moves. Records added later are not counted. One thread.
class TESSERA_API CeDBIterator : public Iterator {
public:
    /// @{
    /// The table is a CeDBTable. Visits every record when `minValue` is null, else those whose sort
    /// property equals it. The properties are borrowed and must outlive the iterator. `maxValue` is not
    /// consulted.
    CeDBIterator(Table* owner, CCeDBProp* minValue, CCeDBProp* maxValue);
    CeDBIterator(Table* owner, int sortAttr, CCeDBProp* minValue, CCeDBProp* maxValue);
    /// @}

    DWORD getCur() override;
    /// @return S_OK, with `rec` untouched when the current record is gone; E_POINTER; E_ACCESSDENIED when
    ///         the table is not open; E_FAIL when the record cannot be read.
    [[nodiscard]] HRESULT getRecord(CCeDBRecord* rec) override;
    /// Empty when the table is not open, the record has no more properties than `attrIdx`, or not this one.
    CCeDBProp getProp(int attrIdx) override;
    /// The same as text (renderText).
    CString getString(int attrIdx) override;

    /// Moves to the last record.
    [[nodiscard]] HRESULT last() override;
    /// Steps forward; the first step lands on the first record.
    /// @return S_OK; S_FALSE past the last record, nothing changed; E_FAIL when the seek failed;
    ///         E_ACCESSDENIED when there is nothing to walk.
    [[nodiscard]] HRESULT next() override;
    /// Steps back; as a first step it lands on the last record. Results as for `next`.
    [[nodiscard]] HRESULT prev() override;

    /// The record at an index of the order; 0, and nothing changed, when there is none.
    DWORD getAt(int idx) override;
    /// @return S_OK; E_POINTER; E_ACCESSDENIED when there is nothing to walk or the table is not open;
    ///         E_FAIL when there is no such record or it cannot be read.
    [[nodiscard]] HRESULT getRecordAt(int idx, CCeDBRecord* rec) override;
    /// The value at an index; empty when there is no such record or attribute.
    CCeDBProp getPropAt(int idx, int attrIdx) override;
    /// Unlike the others takes `idx` for an object identifier.
    CString getStringAt(int idx, int attrIdx) override;

    bool isOpened() override;

protected:
    /// Counts what is to be walked. E_ACCESSDENIED when the table is not open.
    [[nodiscard]] HRESULT init() override;

private:
    CCeDBDatabase* database();
    HRESULT moved(DWORD reached, int steps);
    void setPosition(int idx, DWORD oid);
    bool isIndex(int idx);
    bool isAttribute(int attrIdx);
    bool readRecord(DWORD oid, CCeDBRecord& record);
    CCeDBProp propOf(const CCeDBRecord& record, int attrIdx);
};

}  // namespace Database
