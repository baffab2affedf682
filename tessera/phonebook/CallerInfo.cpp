#include <algorithm>
#include <memory>

#include "tessera/database/CallerLookup.h"
#include "tessera/database/ContactItem.h"
#include "tessera/database/Guarded.h"
#include "tessera/phonebook/Operation.h"
#include "tessera/phonebook/PhoneBookDBMgr.h"
#include "tessera/phonebook/SpeedDialRow.h"
#include "tessera/phonebook/TableRows.h"
#include "tessera/phonebook/model/FieldText.h"
#include "tessera/phonebook/model/TelNo.h"
#include "tessera/platform/objectstore/ObjectStore.h"

namespace PhoneBook {

using Database::Iterator;

namespace {

/// Does one of the contact's five numbers reduce to exactly this one?
bool holdsNumber(IContact* contact, const CString& telNo) {
    PBRecord numbers;
    numbers.dwCITypeMask = dwTelNoMask_;
    const DWORD found = Database::readFields(contact, numbers);
    return std::ranges::any_of(adwTelNoAttrFlagMap_, [&](DWORD flag) {
        return (found & flag) != 0 && makeCNIP(getPBRecordFieldStr(numbers, flag)) == telNo;
    });
}

/// The caller, if the table of numbers knows: then nobody else needs to be looked at.
ComPtr<IDispatch> holderOf(const CString& telNo, Database::POlDBTable& contacts) {
    ComPtr<IDispatch> item;
    const DWORD oid = Database::contactWithNumber(telNo);
    const bool holds = oid != 0 && SUCCEEDED(contacts.getItemFromOid(oid, item.out())) &&
                       holdsNumber(Database::contactOf(item.get()), telNo);
    return holds ? item : ComPtr<IDispatch>();
}

/// Copies an extension row's attribute into its field; answers whether that counts as found.
bool fillFromRow(PBRecord& record, const PBAttribute& attribute, const CCeDBProp& value) {
    if (attribute.text != nullptr) {
        record.*attribute.text = value.getText();
        return !value.getText().IsEmpty();
    }
    record.*attribute.number = value.getUI4();
    return value.getUI4() != 0 || attribute.id == PBDBATTR_PRIVATE;  // no slots is an answer too
}

}  // namespace

void PhoneBookDBMgr::makeCNIP(const WCHAR* in, WCHAR* out) {
    PhoneBook::makeCNIP(in, out);
}

CString PhoneBookDBMgr::makeCNIP(const WCHAR* in) {
    return Database::guarded(CString(), [&] { return PhoneBook::makeCNIP(in); });
}

CString PhoneBookDBMgr::makeTelNoStrFromCID(const WCHAR* cid) {
    return Database::guarded(CString(), [&] { return PhoneBook::makeTelNoStrFromCID(cid); });
}

HRESULT PhoneBookDBMgr::queryCallerInfo(const CString& telNo, PBRecord* record, DWORD* oid) {
    return operation([&]() -> HRESULT {
        if (!isTableOpen(PBDBTBL_POLCONTACTS)) return E_FAIL;
        if (record == nullptr) return E_POINTER;
        if (oid != nullptr) *oid = 0;
        if (telNo.IsEmpty()) return E_INVALIDARG;
        const ObjectStoreGlance glance;
        if (ComPtr<IDispatch> item = holderOf(telNo, *contactsTable()))
            return fillRecord(Database::contactOf(item.get()), record, oid);
        const std::unique_ptr<Iterator> holders(searchPBRecordOfTelNo(nullptr, telNo));
        if (holders == nullptr) {
            *record = PBRecord();
            return E_FAIL;
        }
        // Holders may have the number inside a longer one; the first that has it exactly is the caller.
        HRESULT result = S_OK;
        while (holders->next() == S_OK) {
            ComPtr<IDispatch> item;
            result = contactsTable()->getItemFromOid(holders->getCur(), item.out());
            if (FAILED(result)) continue;
            IContact* contact = Database::contactOf(item.get());
            if (holdsNumber(contact, telNo)) return fillRecord(contact, record, oid);
        }
        return result;
    });
}

HRESULT PhoneBookDBMgr::queryCallerInfo(const DWORD& oid, PBRecord* record) {
    return operation([&]() -> HRESULT {
        if (oid == 0 || record == nullptr || contactsTable() == nullptr) return E_FAIL;
        const ObjectStoreGlance glance;
        ComPtr<IDispatch> item;
        if (const HRESULT result = contactsTable()->getItemFromOid(oid, item.out()); FAILED(result)) return result;
        return fillRecord(Database::contactOf(item.get()), record, nullptr);
    });
}

HRESULT PhoneBookDBMgr::fillRecord(IContact* contact, PBRecord* record, DWORD* oid) {
    DWORD found = 0;
    const HRESULT result = getCallerInfo(contact, record, &found, oid);
    record->dwCITypeMask = found;
    return result;
}

HRESULT PhoneBookDBMgr::getCallerInfo(IContact* contact, PBRecord* record, DWORD* found, DWORD* oid) {
    const DWORD requested = record->dwCITypeMask;
    DWORD contactFound = 0;
    DWORD extensionFound = 0;
    DWORD reported = 0;  // a contact's identifier is reported only along with extension fields: meant so
    HRESULT result = contactsTable()->getCallerInfo(contact, record, &contactFound);
    if (result == E_OUTOFMEMORY) return result;  // any other failure: it has none of the fields
    if ((requested & dwExtensionMask_) != 0) {
        reported = Database::oidOf(contact);
        CString unused;
        const HRESULT extension = getCallerInfo(reported, unused, record, &extensionFound);
        result = FAILED(extension) ? S_FALSE : extension;
    }
    const DWORD all = contactFound | extensionFound;
    if (found != nullptr) *found = all;
    if (oid != nullptr) *oid = reported;
    return (requested & all) == all ? result : S_FALSE;
}

HRESULT PhoneBookDBMgr::getCallerInfo(DWORD& oid, CString& /*text*/, PBRecord* record, DWORD* found) {
    if (!isTableOpen(PBDBTBL_PHONEBOOKEXT)) return E_FAIL;
    if (record == nullptr) return E_POINTER;
    if ((record->dwCITypeMask & dwExtensionMask_) == 0) return S_FALSE;

    const Database::RecordDef& schema = aRecDef_[PBDBTBL_PHONEBOOKEXT];
    DWORD rowOid = 0;
    CCeDBRecord row;
    const HRESULT query = findExtensionRow(oid, rowOid, &row);
    DWORD filled = 0;
    for (const PBAttribute& attribute : aPBAttribute_) {
        if (attribute.place.nTableID != PBDBTBL_PHONEBOOKEXT) continue;
        if (query != S_OK) {
            setPBRecordFieldStr(*record, attribute.mask, CString());
            continue;
        }
        if ((record->dwCITypeMask & attribute.mask) == 0) continue;
        const CCeDBProp& value = row.getProp(schema.getAttrIdent(attribute.place.nAttrIdx));
        if (fillFromRow(*record, attribute, value)) filled |= attribute.mask;
    }
    if (query != S_OK) return FAILED(query) ? query : E_FAIL;
    if (found != nullptr) *found = filled;
    if (filled == 0) return E_FAIL;
    return filled == record->dwCITypeMask ? S_OK : S_FALSE;
}

HRESULT PhoneBookDBMgr::queryCID(DWORD speedDialId, CString* telNo) {
    return operation([&]() -> HRESULT {
        if (!isTableOpen(PBDBTBL_SPEEDDIALNO) || telNo == nullptr) return E_FAIL;
        CCeDBRecord row;
        DWORD rowOid = 0;
        const HRESULT result = seekRow(*tables_[PBDBTBL_SPEEDDIALNO], slotProp(speedDialId), rowOid, &row);
        if (result != S_OK) return result;
        *telNo = PhoneBook::makeCNIP(row.getProp(identOfSpeedDial(sdialTelNo)).getText());
        return S_OK;
    });
}

}  // namespace PhoneBook
