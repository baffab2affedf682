#pragma once

#include "tessera/Export.h"
#include "tessera/platform/base/Results.h"
#include "tessera/platform/objectstore/CCeDBRecord.h"

namespace Database {

class Table;

/// A cursor over the records of a table, whatever store it is in. It stands before the first record until
/// it is moved. Attributes are those of the table, by index.
///
/// Made by a table's getIterator and owned by the caller, who deletes it before the table. The table and
/// the properties are borrowed. A derived iterator's constructor calls its own `init`. The order of the
/// virtual operations is part of the interface. One thread.
class TESSERA_API Iterator {
public:
    /// The position of a cursor that has none yet.
    static constexpr int nInvalidItemIdx_ = -1;

    /// @{
    /// A cursor over that table between two bounds, which are borrowed; null is no bound. The second form also
    /// says the attribute that they are of.
    Iterator(Table* owner, CCeDBProp* p1, CCeDBProp* p2);
    Iterator(Table* owner, int sortAttr, CCeDBProp* p1, CCeDBProp* p2);
    /// @}
    Iterator(const Iterator&) = default;
    Iterator& operator=(const Iterator&) = default;
    virtual ~Iterator();

    /// The object identifier of the current record; 0 when there is none.
    virtual DWORD getCur();
    /// Reads the current record into `rec`.
    /// @return S_OK; E_NOTIMPL where the store has no records to read
    [[nodiscard]] virtual HRESULT getRecord(CCeDBRecord* rec);
    /// @{
    /// The current record's value of an attribute, and the same as text; empty when there is none.
    virtual CCeDBProp getProp(int attrIdx) = 0;
    virtual CString getString(int attrIdx) = 0;
    /// @}

    /// @{
    /// The moves answer S_OK, S_FALSE past either end, or a failure; E_NOTIMPL where a kind of cursor has no such move.
    [[nodiscard]] virtual HRESULT last();
    [[nodiscard]] virtual HRESULT next() = 0;
    [[nodiscard]] virtual HRESULT prev();
    /// @}

    /// Keeps the count in step with a record that was deleted through the table; deletes nothing itself.
    /// @return S_OK always.
    virtual HRESULT deleteCur();

    /// @{
    /// The record, or a value of it, by index from 0; 0 or an empty value when there is none. They move the cursor
    /// there.
    virtual DWORD getAt(int idx);
    [[nodiscard]] virtual HRESULT getRecordAt(int idx, CCeDBRecord* rec);
    virtual CCeDBProp getPropAt(int idx, int attrIdx);
    virtual CString getStringAt(int idx, int attrIdx);
    /// @}
    /// Moves to `idx` and, unless `positionOnly`, does as deleteCur.
    /// @return E_ACCESSDENIED when not opened; E_FAIL when `idx` is below 0 or above the count.
    [[nodiscard]] virtual HRESULT deleteAt(int idx, bool positionOnly);

    /// How many records there are to walk.
    virtual int getNumItems();
    /// True when there is something to walk.
    virtual bool isOpened() = 0;

protected:
    /// Looks up what is to be walked; called by the constructors of derived cursors. The base answers E_NOTIMPL.
    [[nodiscard]] virtual HRESULT init();

    /// The table, borrowed.
    Table* getTable() const { return table; }
    /// @{
    /// The one value to visit, and the bounds that the cursor was made with; borrowed, null where there is none.
    CCeDBProp* getEqualValue() const { return equalValue; }
    CCeDBProp* getMinRange() const { return minRange; }
    CCeDBProp* getMaxRange() const { return maxRange; }
    /// @}

    Table* table;                     ///< Borrowed; outlives the cursor.
    int sortIdx = 0;                  ///< The attribute that the bounds are of.
    int numItems = 0;                 ///< What getNumItems answers.
    int curIdx = nInvalidItemIdx_;    ///< The position.
    DWORD curOid = 0;                 ///< The record at the position; 0 when there is none.
    CCeDBProp* equalValue = nullptr;  ///< Always null here.
    CCeDBProp* minRange;              ///< The lower bound; borrowed.
    CCeDBProp* maxRange;              ///< The upper bound; borrowed.
};

}  // namespace Database
