#include <algorithm>
#include <memory>

#include "tessera/common/CommaSepValList.h"
#include "tessera/database/ContactItem.h"
#include "tessera/database/Guarded.h"
#include "tessera/database/PBGroupIterator.h"
#include "tessera/database/ScanIterator.h"
#include "tessera/phonebook/ExtensionRow.h"
#include "tessera/phonebook/Operation.h"
#include "tessera/phonebook/PhoneBookDBMgr.h"
#include "tessera/phonebook/RowFields.h"
#include "tessera/phonebook/TableRows.h"
#include "tessera/phonebook/model/FieldText.h"
#include "tessera/phonebook/model/TelNo.h"

namespace PhoneBook {

using Database::Iterator;
using Database::POlDBIterator;
using Database::POlDBTable;

namespace {

constexpr DWORD groupMask = adwCITypeMaskMap_[PBDBATTR_GROUP];
constexpr DWORD categoriesMask = adwCITypeMaskMap_[PBDBATTR_CATEGORIES];

/// The numbers that can have a speed-dial slot.
constexpr DWORD slotNumbersMask = 0x1C;

/// The field of a record as a property of that ident.
CCeDBProp propOfField(const PBRecord& record, const PBAttribute& attribute, WORD ident) {
    if (attribute.text != nullptr) return CCeDBProp::ofText(ident, record.*attribute.text);
    if (attribute.number != nullptr) return CCeDBProp::ofUI4(ident, record.*attribute.number);
    return CCeDBProp::ofR8(ident, record.*attribute.date);
}

/// Null when memory is short.
std::unique_ptr<CCeDBProp> newProp(CCeDBProp value) {
    return std::unique_ptr<CCeDBProp>(Database::newOrNull<CCeDBProp>(std::move(value)));
}

/// Adds an element, null or not. What cannot be added is freed.
void add(CObArray& props, std::unique_ptr<CCeDBProp> prop) {
    props.Add(prop.get());
    static_cast<void>(prop.release());
}

/// Replaces an element; one that could not be made stays null.
void overwrite(CObArray& props, int index, const CCeDBProp& value) {
    if (auto* prop = static_cast<CCeDBProp*>(props[index]); prop != nullptr) *prop = value;
}

/// Properties gathered for a write, freed at the end of the scope.
class GatheredProps {
public:
    explicit GatheredProps(PhoneBookDBMgr& manager) : manager_(manager) {}
    GatheredProps(const GatheredProps&) = delete;
    GatheredProps& operator=(const GatheredProps&) = delete;
    ~GatheredProps() { manager_.clearObArray(props_); }

    CObArray& array() { return props_; }
    /// E_OUTOFMEMORY when an element could not be made: without it those behind would be taken for others.
    HRESULT takeRecord(CCeDBRecord& record) {
        if (std::ranges::find(props_, nullptr) != props_.end()) return E_OUTOFMEMORY;
        record.reserve(props_.GetSize());
        for (CObject* prop : props_)
            record.addProp(std::move(*static_cast<CCeDBProp*>(prop)));
        return S_OK;
    }

private:
    PhoneBookDBMgr& manager_;
    CObArray props_;
};

}  // namespace

HRESULT PhoneBookDBMgr::getTableAttrsFromPBRecord(int tableId, DWORD oid, PBRecord& record, CObArray& props) {
    return operation([&] {
        const Database::RecordDef& schema = aRecDef_[tableId];
        for (int i = 0; i < schema.getNumAttrs(); ++i) {
            const Database::AttrDef& attr = *schema.getAttrDef(i);
            const int pbAttrId = getPBDBAttrID(tableId, i);
            const DWORD mask = pbAttrId == nNumPBAttrs_ ? 0 : getCITypeMaskFromPBDBAttrID(pbAttrId);
            if ((record.dwCITypeMask & mask) == 0) {
                add(props, newProp(CCeDBProp(attr.getType(), attr.getIdent())));
                continue;
            }
            if (mask == categoriesMask) {
                record.strCategories = makeCategories(contactsTable(), oid, getPBRecordFieldStr(record, groupMask));
            }
            const PBAttribute& field = aPBAttribute_[static_cast<std::size_t>(pbAttrId)];
            add(props, newProp(propOfField(record, field, attr.getIdent())));
        }
        return S_OK;
    });
}

HRESULT PhoneBookDBMgr::clearObArray(CObArray& props) {
    for (int i = props.GetSize() - 1; i >= 0; --i)
        delete props[i];
    props.RemoveAll();
    return S_OK;
}

CString PhoneBookDBMgr::makeCategories(POlDBTable* contacts, DWORD oid, const CString& group) {
    ComPtr<IDispatch> item;
    if (oid == 0 || contacts == nullptr || FAILED(contacts->getItemFromOid(oid, item.out()))) return group;
    Bstr current;
    Database::contactOf(item.get())->get_Categories(current.out());
    // A group that is there already is put in front again: meant so.
    return current.isEmpty() ? group : group + TEXT(", ") + current.text();
}

CString PhoneBookDBMgr::getPBGroupName(const CString& categories, const CString& group) {
    CStringArray names;
    common::CommaSepValList(categories).getList(names);
    return std::ranges::find(names, group) != names.end() ? group : CString();
}

HRESULT PhoneBookDBMgr::insertPBRecord(PBRecord& record, DWORD* oid) {
    if (!isTableOpen(PBDBTBL_POLCONTACTS)) return E_FAIL;
    DWORD unwanted = 0;
    DWORD& contactOid = oid != nullptr ? *oid : unwanted;
    contactOid = 0;
    const auto insert = [&]() -> HRESULT {
        record.dwCITypeMask |= categoriesMask;
        HRESULT result = insertContact(record, contactOid);
        // Whatever became of the contact: an extension row of a failed one carries the identifier 0.
        if ((record.dwCITypeMask & dwExtensionMask_) != 0) result = insertExtensionRow(contactOid, record);
        return result;
    };
    return writingOperation(insert, [&] { contactOid = 0; });
}

HRESULT PhoneBookDBMgr::getContactRow(DWORD oid, PBRecord& record, CCeDBRecord& row) {
    GatheredProps contact(*this);
    const HRESULT result = getTableAttrsFromPBRecord(PBDBTBL_POLCONTACTS, oid, record, contact.array());
    return SUCCEEDED(result) ? contact.takeRecord(row) : result;
}

HRESULT PhoneBookDBMgr::insertContact(PBRecord& record, DWORD& oid) {
    CCeDBRecord row;
    const HRESULT result = getContactRow(0, record, row);
    return SUCCEEDED(result) ? contactsTable()->insertRecord(&row, oid) : result;
}

HRESULT PhoneBookDBMgr::getExtensionRow(DWORD contactOid, PBRecord& record, CCeDBRecord& row) {
    const CString primaryNumber = getPBRecordFieldStr(record, getPrimaryTelNoFlag(record));
    GatheredProps extension(*this);
    const HRESULT result = getTableAttrsFromPBRecord(PBDBTBL_PHONEBOOKEXT, 0, record, extension.array());
    if (FAILED(result)) return result;
    overwrite(extension.array(), extPodbOid, contactProp(contactOid));
    overwrite(extension.array(), extName, CCeDBProp::ofText(identOfExtension(extName), record.strName));
    overwrite(extension.array(), extTelNo,
              CCeDBProp::ofText(identOfExtension(extTelNo), PhoneBook::makeCNIP(primaryNumber)));
    overwrite(extension.array(), extFlags, CCeDBProp::ofUI2(identOfExtension(extFlags), dwRowFlags_));
    return extension.takeRecord(row);
}

HRESULT PhoneBookDBMgr::insertExtensionRow(DWORD contactOid, PBRecord& record) {
    if (tables_[PBDBTBL_PHONEBOOKEXT] == nullptr) return E_FAIL;
    CCeDBRecord row;
    if (const HRESULT result = getExtensionRow(contactOid, record, row); FAILED(result)) return result;
    DWORD rowOid = 0;
    return tables_[PBDBTBL_PHONEBOOKEXT]->insertRecord(&row, rowOid);
}

/// S_FALSE when the contact has no row; E_FAIL when that cannot be told. `row` may be null.
HRESULT PhoneBookDBMgr::findExtensionRow(DWORD contactOid, DWORD& rowOid, CCeDBRecord* row) {
    if (!isTableOpen(PBDBTBL_PHONEBOOKEXT)) return E_FAIL;
    return seekRow(*tables_[PBDBTBL_PHONEBOOKEXT], contactProp(contactOid), rowOid, row);
}

HRESULT PhoneBookDBMgr::writeExtensionRow(DWORD contactOid, PBRecord& record) {
    DWORD rowOid = 0;
    const HRESULT query = findExtensionRow(contactOid, rowOid, nullptr);
    if (FAILED(query)) return query;
    if (query == S_FALSE) return insertExtensionRow(contactOid, record);
    CCeDBRecord row;
    if (const HRESULT result = getExtensionRow(contactOid, record, row); FAILED(result)) return result;
    return tables_[PBDBTBL_PHONEBOOKEXT]->updateRecord(rowOid, &row, 0, nullptr);
}

HRESULT PhoneBookDBMgr::updatePBRecord(DWORD oid, PBRecord& record) {
    if (!isTableOpen(PBDBTBL_POLCONTACTS)) return E_FAIL;
    return writingOperation([&]() -> HRESULT {
        record.dwCITypeMask |= categoriesMask;
        CCeDBRecord row;
        HRESULT result = getContactRow(oid, record, row);
        if (SUCCEEDED(result)) result = contactsTable()->updateRecord(oid, &row, 0, nullptr);
        // Whatever became of the contact; without extension data the row is left as it is.
        if ((record.dwCITypeMask & dwExtensionMask_) != 0) result = writeExtensionRow(oid, record);
        return result;
    });
}

HRESULT PhoneBookDBMgr::deletePBRecord(DWORD oid) {
    if (!isTableOpen(PBDBTBL_PHONEBOOKEXT)) return E_FAIL;
    return writingOperationOn(speedDialCache_, [&]() -> HRESULT {
        PBRecord record;
        record.dwCITypeMask = slotNumbersMask | dwPrivateFlag_;
        static_cast<void>(queryCallerInfo(oid, &record));  // a contact without numbers has no slots
        CCeDBProp key = contactProp(oid);
        HRESULT result = tables_[PBDBTBL_PHONEBOOKEXT]->deleteRecord(key);
        if (FAILED(result)) return result;
        result = deleteRecord(PBDBTBL_POLCONTACTS, oid);
        if (FAILED(result)) return result;
        const bool hasSlots = (record.dwCITypeMask & dwPrivateFlag_) != 0;
        forEachSlot(hasSlots ? record.dwPrivate : 0, [&](DWORD slot, DWORD flag) {
            if ((record.dwCITypeMask & flag) == 0) return;
            SpeedDialInfo held;  // by nobody: the contact is gone, and no link is left to clear
            result = querySpeedDialInfo(slot, &held, false);
            // A slot that holds another number by now stays.
            if (SUCCEEDED(result) && held.strTelNo == PhoneBook::makeCNIP(getPBRecordFieldStr(record, flag))) {
                result = deleteSpeedDialInfo(slot, &held);
            }
        });
        return result;
    });
}

HRESULT PhoneBookDBMgr::deleteRecord(int tableId, DWORD& oid) {
    if (!isTableOpen(static_cast<UINT>(tableId))) return E_FAIL;
    return writingOperation([&] { return tables_[static_cast<std::size_t>(tableId)]->deleteRecord(oid); });
}

HRESULT PhoneBookDBMgr::deleteAllPBRecords() {
    if (!isTableOpen(PBDBTBL_PHONEBOOKEXT)) return E_FAIL;
    return writingOperationOn(speedDialCache_, [&]() -> HRESULT {
        // The contacts go even when a row stays; their result decides.
        static_cast<void>(tables_[PBDBTBL_PHONEBOOKEXT]->deleteAllRecords());
        if (contactsTable() == nullptr) return E_FAIL;
        if (const HRESULT result = contactsTable()->deleteAllRecords(); FAILED(result)) return result;
        return deleteAllSpeedDialInfos();
    });
}

DWORD PhoneBookDBMgr::getNumRecords() {
    return contactsTable() == nullptr ? 0 : contactsTable()->getNumRecords();
}

HRESULT PhoneBookDBMgr::insertRecord() {
    if (tables_[PBDBTBL_PHONEBOOKEXT] == nullptr) return E_FAIL;
    return writingOperation([&] { return tables_[PBDBTBL_PHONEBOOKEXT]->insertRecord(); });
}

Iterator* PhoneBookDBMgr::searchPBRecord(int pbAttrId, const CString& text) {
    if (contactsTable() == nullptr) return nullptr;
    return contactsTable()->getScanIterator(nullptr, getAttrIDInTable(pbAttrId), text);
}

Iterator* PhoneBookDBMgr::searchPBRecord(const CString& restriction) {
    return contactsTable() == nullptr ? nullptr : contactsTable()->getIterator(nullptr, restriction);
}

Iterator* PhoneBookDBMgr::searchPBRecord(POlDBIterator* outer, int attrIdx, CCeDBProp* from, CCeDBProp* to) {
    return contactsTable() == nullptr ? nullptr : contactsTable()->getIterator(outer, attrIdx, from, to);
}

Iterator* PhoneBookDBMgr::searchPBRecordOfTelNo(POlDBIterator* /*outer*/, const CString& telNo) {
    if (contactsTable() == nullptr) return nullptr;
    return contactsTable()->getScanIterator(nullptr, Database::SCANATTR_TELNO, telNo);
}

Iterator* PhoneBookDBMgr::searchPBRecordOfPBGroup(const CString& group) {
    if (contactsTable() == nullptr || tables_[PBDBTBL_PHONEBOOKEXT] == nullptr) return nullptr;
    return Database::guarded<Iterator*>(nullptr, [&]() -> Iterator* {
        auto members = std::make_unique<Database::PBGroupIterator>(contactsTable(), tables_[PBDBTBL_PHONEBOOKEXT],
                                                                   PBDBATTR_CATEGORIES, group);
        return members->isOpened() ? members.release() : nullptr;
    });
}

Iterator* PhoneBookDBMgr::qSearchPBRecord(int pbAttrId, const CString& prefix) {
    if (prefix.IsEmpty()) return getIterator(UINT{PBDBATTR_NAME}, nullptr, nullptr);
    return Database::guarded<Iterator*>(nullptr, [&]() -> Iterator* {
        const TupleMapEntry& place = atmDBAttrMap_[static_cast<std::size_t>(pbAttrId)];
        const WORD ident = place.nTableID < 0 ? WORD{0} : aRecDef_[place.nTableID].getAttrIdent(place.nAttrIdx);
        CString beyond = prefix;
        const int last = beyond.GetLength() - 1;
        beyond.SetAt(last, static_cast<WCHAR>(beyond[last] + 1));
        auto from = std::make_unique<CCeDBProp>(CCeDBProp::ofText(ident, prefix));
        auto to = std::make_unique<CCeDBProp>(CCeDBProp::ofText(ident, beyond));
        // By name whatever the attribute, which only lends the bounds its identifier: meant so.
        Iterator* found = getIterator(UINT{PBDBATTR_NAME}, from.get(), to.get());
        if (found != nullptr) static_cast<POlDBIterator*>(found)->keepBounds(std::move(from), std::move(to));
        return found;
    });
}

}  // namespace PhoneBook
