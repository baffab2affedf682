#include <array>
#include <cstddef>
#include <memory>
#include <utility>

#include "tessera/phonebook/Operation.h"
#include "tessera/phonebook/PhoneBookDBMgr.h"
#include "tessera/phonebook/RowFields.h"
#include "tessera/phonebook/TableRows.h"
#include "tessera/phonebook/model/FieldText.h"
#include "tessera/phonebook/model/TelNo.h"

namespace PhoneBook {

using Database::Iterator;

namespace {

constexpr DWORD nameMask = adwCITypeMaskMap_[PBDBATTR_NAME];

/// The call table's attributes that are told apart.
enum CallAttr : int { callTime = 0, callFlags = 9 };

/// The entry's members in the order of the table's attributes.
constexpr std::array<RowField<CallEntry>, 10> callFields = {{
    {.time = &CallEntry::ftTimestamp},
    {.text = &CallEntry::strCID},
    {.text = &CallEntry::strName},
    {.number = &CallEntry::dwTelType},
    {.number = &CallEntry::dwCallingTime},
    {.number = &CallEntry::dwCallType},
    {.text = &CallEntry::strCNAP},
    {.text = &CallEntry::strCDNIP},
    {},  // "Hint" is written as 0 and never read
    {.number = &CallEntry::dwFlags},
}};
static_assert(callFields[callFlags].number == &CallEntry::dwFlags);

const Database::AttrDef& attrOfCall(int attr) {
    return *PhoneBookDBMgr::aRecDef_[PBDBTBL_CALLHISTORY].getAttrDef(attr);
}

/// One property per attribute of the table, in their order.
std::array<CCeDBProp, callFields.size()> propsOf(const CallEntry& entry) {
    std::array<CCeDBProp, callFields.size()> props;
    for (std::size_t i = 0; i < props.size(); ++i)
        props[i] = propOfField(attrOfCall(static_cast<int>(i)), entry, callFields[i]);
    return props;
}

/// Fills the entry from a row; `propAt` answers the row's property of an attribute.
template <class PropAt>
void fillEntry(CallEntry& entry, PropAt&& propAt) {
    for (std::size_t i = 0; i < callFields.size(); ++i)
        takeProp(propAt(static_cast<int>(i)), entry, callFields[i]);
}

/// Fills the entry from the row that the iterator is on. E_FAIL when it cannot be read.
HRESULT readCurrent(Iterator& calls, CallEntry& entry) {
    CCeDBRecord row;
    if (FAILED(readRow(calls, row))) return E_FAIL;
    fillEntry(entry, [&](int attr) { return shownProp(row, aRecDef_[PBDBTBL_CALLHISTORY], attr); });
    return S_OK;
}

/// Which of the record's numbers reduces to exactly this one; 0 for none.
DWORD flagOfNumber(const PBRecord& record, const CString& telNo) {
    for (const DWORD flag : adwTelNoAttrFlagMap_) {
        if (makeCNIP(getPBRecordFieldStr(record, flag)) == telNo) return flag;
    }
    return 0;
}

}  // namespace

HRESULT PhoneBookDBMgr::insertCallEntry(CallEntry* entry) {
    if (!isTableOpen(PBDBTBL_CALLHISTORY) || entry == nullptr) return E_FAIL;
    // Before the unit, which a failure of storage would end: an unknown caller is logged as well.
    static_cast<void>(getCallEntryData(entry));
    return writingOperation([&]() -> HRESULT {
        Database::Table& calls = *tables_[PBDBTBL_CALLHISTORY];
        // One row goes however many there are, and whether or not it can; neither result counts. Meant so.
        if (calls.getNumRecords() >= nMaxCallEntries_) {
            DWORD oldest = 0;
            static_cast<void>(getLRUCallEntry(&oldest, nullptr));
            static_cast<void>(deleteCallEntry(oldest));
        }
        entry->dwFlags = dwRowFlags_;
        auto props = propsOf(*entry);
        return calls.insertRecord(props.data()) == S_OK ? S_OK : E_FAIL;
    });
}

HRESULT PhoneBookDBMgr::getCallEntryData(CallEntry* entry) {
    return operation([&]() -> HRESULT {
        if (entry->strCID.IsEmpty()) {
            entry->strName = szNoNumberName_;
            return S_OK;
        }
        if (entry->strCID == szWithheldCID_) return S_OK;

        constexpr DWORD wanted = nameMask | dwTelNoMask_;
        PBRecord caller;
        caller.dwCITypeMask = wanted;
        HRESULT result = entry->strName.IsEmpty() ? E_FAIL : queryCallerNamed(entry->strName, caller);
        if (FAILED(result)) {
            caller.dwCITypeMask = wanted;  // again: by now it says what was found
            result = queryCallerInfo(entry->strCID, &caller, nullptr);
        }
        if (FAILED(result)) {
            entry->strName.Empty();
            return S_FALSE;
        }
        const DWORD flag = flagOfNumber(caller, entry->strCID);
        CString name = flag != 0 ? getPBRecordFieldStr(caller, flag) : entry->strName;
        // Where contacts hold the number within longer ones only, the mask is still the one asked with, and the
        // name is emptied: meant so.
        if ((caller.dwCITypeMask & nameMask) != 0) name = caller.strName;
        if (flag != 0) entry->dwTelType = flag;
        entry->strName = std::move(name);
        return result;
    });
}

/// The wanted fields of the first contact of a name. E_FAIL when there is none.
HRESULT PhoneBookDBMgr::queryCallerNamed(const CString& name, PBRecord& caller) {
    CCeDBProp key = CCeDBProp::ofText(aRecDef_[PBDBTBL_POLCONTACTS].getAttrIdent(0), name);
    // One object as both bounds stands for equality.
    const std::unique_ptr<Iterator> namesakes(getIterator(UINT{PBDBATTR_NAME}, &key, &key));
    if (namesakes == nullptr || namesakes->next() != S_OK) return E_FAIL;
    return queryCallerInfo(namesakes->getCur(), &caller);
}

HRESULT PhoneBookDBMgr::queryCallEntry(DWORD oid, CallEntry* entry) {
    return operation([&]() -> HRESULT {
        if (!isTableOpen(PBDBTBL_CALLHISTORY)) return E_FAIL;
        if (entry == nullptr) return E_POINTER;
        CCeDBRecord row;
        if (cedbTable(PBDBTBL_CALLHISTORY)->getRecord(oid, &row) != S_OK) return E_FAIL;
        const DWORD flags = entry->dwFlags;
        const auto propAt = [&](int attr) { return row.getProp(attrOfCall(attr).getIdent()); };
        fillEntry(*entry, propAt);
        // The flags of a row without any, which is also how a row that is not there reads, stay: meant so.
        if (propAt(callFlags).isEmpty()) entry->dwFlags = flags;
        return S_OK;
    });
}

HRESULT PhoneBookDBMgr::queryCallEntry(const FILETIME& /*time*/, CallEntry* /*entry*/) {
    return E_NOTIMPL;
}

HRESULT PhoneBookDBMgr::queryCallEntry(const CString& /*telNo*/, CallEntry* /*entry*/) {
    return E_NOTIMPL;
}

HRESULT PhoneBookDBMgr::getMRUCallEntry(CallEntry* entry) {
    return operation([&]() -> HRESULT {
        if (!isTableOpen(PBDBTBL_CALLHISTORY)) return E_FAIL;
        if (entry == nullptr) return E_POINTER;
        std::unique_ptr<Iterator> calls;
        if (const HRESULT reached = reachCall(&Iterator::next, calls); reached != S_OK) return reached;
        return readCurrent(*calls, *entry);
    });
}

HRESULT PhoneBookDBMgr::getLRUCallEntry(DWORD* oid, CallEntry* entry) {
    return operation([&]() -> HRESULT {
        if (!isTableOpen(PBDBTBL_CALLHISTORY)) return E_FAIL;
        if (oid == nullptr) return E_POINTER;
        std::unique_ptr<Iterator> calls;
        if (const HRESULT reached = reachCall(&Iterator::last, calls); reached != S_OK) return reached;
        *oid = calls->getCur();
        return entry == nullptr ? S_OK : readCurrent(*calls, *entry);
    });
}

/// Puts an iterator over the calls, newest first, on the one that `move` comes to. S_FALSE when there is none.
HRESULT PhoneBookDBMgr::reachCall(HRESULT (Iterator::*move)(), std::unique_ptr<Iterator>& calls) {
    calls.reset(getIterator(UINT{PBDBTBL_CALLHISTORY}, callTime, nullptr, nullptr));
    // To a move a table without rows would be one that is not open.
    const HRESULT any = anyRows(*cedbTable(PBDBTBL_CALLHISTORY), calls.get());
    return any == S_OK ? (calls.get()->*move)() : any;
}

HRESULT PhoneBookDBMgr::deleteCallEntry(DWORD oid) {
    if (!isTableOpen(PBDBTBL_CALLHISTORY)) return E_FAIL;
    if (oid == 0) return E_INVALIDARG;
    return writingOperation([&] { return tables_[PBDBTBL_CALLHISTORY]->deleteRecord(oid); });
}

HRESULT PhoneBookDBMgr::deleteCallEntry(const FILETIME& /*time*/) {
    return E_NOTIMPL;
}

HRESULT PhoneBookDBMgr::deleteAllCallEntries() {
    if (!isTableOpen(PBDBTBL_CALLHISTORY)) return E_FAIL;
    return writingOperation([&] { return tables_[PBDBTBL_CALLHISTORY]->deleteAllRecords(); });
}

}  // namespace PhoneBook
