#include <algorithm>
#include <memory>
#include <utility>

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

/// Fetches a contact, which is the `caller` when it has exactly that number; answers how the fetching went.
HRESULT fetchHolder(Database::POlDBTable& contacts, DWORD oid, const CString& telNo, ComPtr<IDispatch>& caller) {
    ComPtr<IDispatch> item;
    const HRESULT result = contacts.getItemFromOid(oid, item.out());
    if (SUCCEEDED(result) && holdsNumber(Database::contactOf(item.get()), telNo)) caller = std::move(item);
    return result;
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
        ComPtr<IDispatch> caller;
        DWORD holder = 0;
        const HRESULT known = Database::contactWithNumber(telNo, holder);
        if (known == S_OK) static_cast<void>(fetchHolder(*contactsTable(), holder, telNo, caller));
        if (caller) return fillRecord(Database::contactOf(caller.get()), record, oid);

        const std::unique_ptr<Iterator> holders(searchPBRecordOfTelNo(nullptr, telNo));
        if (holders == nullptr) {
            *record = PBRecord();
            return E_FAIL;
        }
        // Holders may have the number inside a longer one; the first that has it exactly is the caller. Where nobody
        // has, how the last of them can be read is all that is answered.
        if (known == S_FALSE) {
            static_cast<void>(holders->last());
            static_cast<void>(holders->prev());
        }
        HRESULT result = S_OK;
        while (!caller && holders->next() == S_OK)
            result = fetchHolder(*contactsTable(), holders->getCur(), telNo, caller);
        return caller ? fillRecord(Database::contactOf(caller.get()), record, oid) : result;
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
