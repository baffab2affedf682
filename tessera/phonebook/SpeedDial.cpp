#include <algorithm>
#include <memory>
#include <utility>

#include "tessera/phonebook/ExtensionRow.h"
#include "tessera/phonebook/Operation.h"
#include "tessera/phonebook/PhoneBookDBMgr.h"
#include "tessera/phonebook/RowFields.h"
#include "tessera/phonebook/SpeedDialRow.h"
#include "tessera/phonebook/TableRows.h"
#include "tessera/phonebook/model/FieldText.h"
#include "tessera/phonebook/model/TelNo.h"

namespace PhoneBook {

using Database::CeDBTable;
using Database::Iterator;

namespace {

/// What is read of the contact in a slot: its name and its numbers, none of the extension fields.
constexpr DWORD contactOfSlotMask = adwCITypeMaskMap_[PBDBATTR_NAME] | dwTelNoMask_;
/// What is read of a contact and written back with its slot word changed: all there is.
constexpr DWORD wholeRecordMask = 0x007F0FFF;

CCeDBRecord rowOf(DWORD id, const SpeedDialInfo& info) {
    CCeDBRecord row;
    row.addProp(slotProp(id));
    row.addProp(CCeDBProp::ofUI4(identOfSpeedDial(sdialTelType), info.dwTelType));
    row.addProp(CCeDBProp::ofText(identOfSpeedDial(sdialTelNo), makeCNIP(info.strTelNo)));
    row.addProp(CCeDBProp::ofUI2(identOfSpeedDial(sdialFlags), static_cast<WORD>(info.dwFlags)));
    return row;
}

const CCeDBProp& propOf(const CCeDBRecord& row, SpeedDialAttr attr) {
    return row.getProp(identOfSpeedDial(attr));
}

/// A row without flags leaves those of the entry.
void readTypeNumberAndFlags(const CCeDBRecord& row, SpeedDialInfo& info) {
    info.dwTelType = propOf(row, sdialTelType).getUI4();
    info.strTelNo = propOf(row, sdialTelNo).getText();
    if (const CCeDBProp* flags = row.findProp(identOfSpeedDial(sdialFlags))) info.dwFlags = flags->getUI2();
}

/// Finds the row of a slot in the table, which is null when it could not be reopened.
HRESULT seekSlot(CeDBTable* slots, DWORD id, DWORD& rowOid, CCeDBRecord* row) {
    return slots == nullptr ? E_FAIL : seekRow(*slots, slotProp(id), rowOid, row);
}

/// Puts a slot into the byte of a slot word that the telephone type has; all but the first three types share one.
DWORD withSlot(DWORD word, DWORD id, DWORD telType) {
    const int shift = 8 * std::min(getTelNoAttrIdx(telType), 3);
    return (word & ~(DWORD{0xFF} << shift)) | ((id & 0xFF) << shift);
}

}  // namespace

HRESULT PhoneBookDBMgr::querySpeedDialInfo(DWORD id, SpeedDialInfo* info, bool withContact) {
    return operation([&]() -> HRESULT {
        if (!isTableOpen(PBDBTBL_SPEEDDIALNO)) return E_FAIL;
        if (info == nullptr) return E_POINTER;
        CeDBTable* slots = reopenSortedBy(PBDBTBL_SPEEDDIALNO, sdialId);
        DWORD rowOid = 0;
        CCeDBRecord row;
        if (seekSlot(slots, id, rowOid, &row) != S_OK) return E_FAIL;
        info->dwSDialID = id;
        readTypeNumberAndFlags(row, *info);
        return withContact ? readContactOfSlot(*info) : S_OK;
    });
}

HRESULT PhoneBookDBMgr::readContactOfSlot(SpeedDialInfo& info) {
    PBRecord contact;
    contact.dwCITypeMask = contactOfSlotMask;
    DWORD contactOid = 0;  // and so it stays, as no extension field is asked for: meant so
    const HRESULT found = queryCallerInfo(info.strTelNo, &contact, &contactOid);
    if (found == S_OK) info.strTelNo = getPBRecordFieldStr(contact, info.dwTelType);
    info.dwOID = contactOid;
    info.strName = contact.strName;
    return found == S_OK ? S_OK : S_FALSE;
}

HRESULT PhoneBookDBMgr::querySpeedDialInfo(const CString& telNo, DWORD& rowOid, SpeedDialInfo* info) {
    return operation([&]() -> HRESULT {
        rowOid = 0;
        // Opens the table if it was not: it is never reported as not open.
        if (!initTableObj(PBDBTBL_SPEEDDIALNO)) return E_FAIL;
        CeDBTable* slots = reopenSortedBy(PBDBTBL_SPEEDDIALNO, sdialTelNo);
        if (slots == nullptr) return E_FAIL;
        CCeDBProp key = CCeDBProp::ofText(identOfSpeedDial(sdialTelNo), PhoneBook::makeCNIP(telNo));
        CCeDBRecord row;
        if (seekRow(*slots, std::move(key), rowOid, &row) != S_OK) return E_FAIL;
        if (info == nullptr) return S_OK;
        info->dwSDialID = static_cast<WORD>(propOf(row, sdialId).getI2());
        info->dwOID = 0;
        readTypeNumberAndFlags(row, *info);
        return S_OK;
    });
}

HRESULT PhoneBookDBMgr::insertSpeedDialInfo(DWORD id, SpeedDialInfo* info) {
    if (!isTableOpen(PBDBTBL_SPEEDDIALNO)) return E_FAIL;
    return writingOperationOn(speedDialCache_, [&]() -> HRESULT {
        CeDBTable* slots = reopenSortedBy(PBDBTBL_SPEEDDIALNO, sdialId);
        if (info == nullptr) return E_POINTER;
        if (slots == nullptr) return E_FAIL;
        info->dwFlags = dwRowFlags_;
        CCeDBRecord row = rowOf(id, *info);
        DWORD rowOid = 0;
        if (slots->insertRecord(&row, rowOid) != S_OK) return E_FAIL;
        const HRESULT linked = setSDialIDInPBExt(id, info->dwOID, info->dwTelType);
        setCacheEntry(id, *info);
        return linked;
    });
}

HRESULT PhoneBookDBMgr::updateSpeedDialInfo(DWORD rowOid, SpeedDialInfo* info) {
    if (!isTableOpen(PBDBTBL_SPEEDDIALNO)) return E_FAIL;
    return writingOperationOn(speedDialCache_, [&]() -> HRESULT {
        CeDBTable* slots = reopenSortedBy(PBDBTBL_SPEEDDIALNO, sdialId);
        if (info == nullptr) return E_POINTER;
        if (slots == nullptr) return E_FAIL;
        info->dwFlags = dwRowFlags_;
        CCeDBRecord row = rowOf(info->dwSDialID, *info);
        if (slots->updateRecord(rowOid, &row, 0, nullptr) != S_OK) return E_FAIL;
        // Unlike an insertion's, its result does not count: meant so.
        static_cast<void>(setSDialIDInPBExt(info->dwSDialID, info->dwOID, info->dwTelType));
        setCacheEntry(info->dwSDialID, *info);
        return S_OK;
    });
}

HRESULT PhoneBookDBMgr::writeSpeedDialInfo(DWORD id, SpeedDialInfo* info) {
    if (!isTableOpen(PBDBTBL_SPEEDDIALNO)) return E_FAIL;
    return writingOperationOn(speedDialCache_, [&]() -> HRESULT {
        CeDBTable* slots = reopenSortedBy(PBDBTBL_SPEEDDIALNO, sdialId);
        if (info == nullptr) return E_POINTER;
        DWORD rowOid = 0;
        const HRESULT sought = seekSlot(slots, id, rowOid, nullptr);
        if (FAILED(sought)) return sought;
        return sought == S_FALSE ? insertSpeedDialInfo(id, info) : updateSpeedDialInfo(rowOid, info);
    });
}

HRESULT PhoneBookDBMgr::deleteSpeedDialInfo(DWORD id, SpeedDialInfo* info) {
    if (!isTableOpen(PBDBTBL_SPEEDDIALNO)) return E_ACCESSDENIED;
    return writingOperationOn(speedDialCache_, [&]() -> HRESULT {
        CeDBTable* slots = reopenSortedBy(PBDBTBL_SPEEDDIALNO, sdialId);
        DWORD rowOid = 0;
        CCeDBRecord row;
        HRESULT result = seekSlot(slots, id, rowOid, &row);
        if (FAILED(result)) return result;
        if (rowOid != 0 && slots->deleteRecord(rowOid) != S_OK) return E_FAIL;
        if (info == nullptr) {
            result = setSDialIDInPBExt(0, propOf(row, sdialTelNo).getText(), propOf(row, sdialTelType).getUI4());
        } else if (info->dwOID != 0) {
            result = setSDialIDInPBExt(0, info->dwOID, info->dwTelType);
        }
        setCacheEntry(id, nullSDialInfo);
        return result;
    });
}

HRESULT PhoneBookDBMgr::moveSpeedDialInfo(DWORD fromId, DWORD toId, SpeedDialInfo* info) {
    if (!isTableOpen(PBDBTBL_SPEEDDIALNO)) return E_FAIL;
    return writingOperationOn(speedDialCache_, [&]() -> HRESULT {
        CeDBTable* slots = reopenSortedBy(PBDBTBL_SPEEDDIALNO, sdialId);
        DWORD rowOid = 0;
        CCeDBRecord row;
        if (seekSlot(slots, fromId, rowOid, &row) != S_OK) return E_FAIL;
        moveSDialInfoCache(fromId, toId);
        // What is in the slot that it moves to is not looked at: meant so.
        if (!row.replaceProp(slotProp(toId))) return E_FAIL;
        row.replaceProp(CCeDBProp::ofUI2(identOfSpeedDial(sdialFlags), dwRowFlags_));
        static_cast<void>(slots->updateRecord(rowOid, &row, 0, nullptr));
        const DWORD telType = propOf(row, sdialTelType).getUI4();
        const bool isContactKnown = info != nullptr && info->dwOID != 0;
        const HRESULT linked = isContactKnown ? setSDialIDInPBExt(toId, info->dwOID, telType)
                                              : setSDialIDInPBExt(toId, propOf(row, sdialTelNo).getText(), telType);
        if (info != nullptr) static_cast<void>(querySpeedDialInfo(toId, info, true));
        return linked;
    });
}

HRESULT PhoneBookDBMgr::deleteAllSpeedDialInfos() {
    if (!isTableOpen(PBDBTBL_SPEEDDIALNO)) return E_ACCESSDENIED;
    return writingOperationOn(speedDialCache_, [&]() -> HRESULT {
        CeDBTable* slots = reopenSortedBy(PBDBTBL_SPEEDDIALNO, sdialId);
        if (slots == nullptr) return E_FAIL;
        const HRESULT deleted = slots->deleteAllRecords();
        if (SUCCEEDED(deleted)) clearSDialInfoCache();
        return forEachExtensionRow(deleted, [&](DWORD rowOid, CCeDBRecord& row) { clearSlotWord(rowOid, row); });
    });
}

/// Empties the slot word of an extension row. A row that has no slots is left as it is.
void PhoneBookDBMgr::clearSlotWord(DWORD rowOid, CCeDBRecord& row) {
    if (row.getProp(identOfExtension(extSlots)).getUI4() == 0) return;
    row.replaceProp(CCeDBProp::ofUI4(identOfExtension(extSlots), 0));
    static_cast<void>(tables_[PBDBTBL_PHONEBOOKEXT]->updateRecord(rowOid, &row, 0, nullptr));
}

HRESULT PhoneBookDBMgr::findFirstEmptySDialID(DWORD startId, DWORD* id) {
    return operation([&]() -> HRESULT {
        if (!isTableOpen(PBDBTBL_SPEEDDIALNO)) return E_FAIL;
        CeDBTable* slots = reopenSortedBy(PBDBTBL_SPEEDDIALNO, sdialId);
        if (id == nullptr) return E_POINTER;
        *id = 0;
        CCeDBProp start = slotProp(startId);
        const std::unique_ptr<Iterator> holders(slots == nullptr ? nullptr
                                                                 : slots->getIterator(sdialId, &start, nullptr));
        HRESULT moved = slots == nullptr ? E_FAIL : anyRows(*slots, holders.get());
        if (moved == S_OK) moved = holders->next();
        if (moved == S_FALSE) *id = startId;
        if (moved != S_OK) return moved == S_FALSE ? S_OK : E_FAIL;
        // Counts up from 1 over the rows of that one slot, and so comes to 1, taken or not, or to 2 when slot 1
        // has two rows. It proposes, it does not search: meant so.
        DWORD expected = 1;
        do {
            const auto slot = static_cast<DWORD>(holders->getProp(sdialId).getI2());
            *id = expected;
            if (slot != expected) return S_OK;
            ++expected;
        } while (holders->next() == S_OK);
        return S_OK;
    });
}

// A contact found only in part, as without an extension row, is written like any other.

HRESULT PhoneBookDBMgr::setSDialIDInPBExt(DWORD id, const CString& telNo, DWORD telType) {
    return writingOperation([&]() -> HRESULT {
        PBRecord contact;
        contact.dwCITypeMask = wholeRecordMask;
        DWORD contactOid = 0;
        const HRESULT found = queryCallerInfo(telNo, &contact, &contactOid);
        return FAILED(found) ? found : writeSlotOf(contactOid, contact, id, telType);
    });
}

HRESULT PhoneBookDBMgr::setSDialIDInPBExt(DWORD id, DWORD& contactOid, DWORD telType) {
    return writingOperation([&]() -> HRESULT {
        PBRecord contact;
        contact.dwCITypeMask = wholeRecordMask;
        const HRESULT found = queryCallerInfo(contactOid, &contact);
        return FAILED(found) ? found : writeSlotOf(contactOid, contact, id, telType);
    });
}

/// Writes a contact back as it was read, but for the slot of one of its numbers.
HRESULT PhoneBookDBMgr::writeSlotOf(DWORD contactOid, PBRecord& contact, DWORD id, DWORD telType) {
    contact.dwCITypeMask |= dwPrivateFlag_;
    contact.dwPrivate = withSlot(contact.dwPrivate, id, telType);
    return updatePBRecord(contactOid, contact);
}

}  // namespace PhoneBook
