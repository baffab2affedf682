#include <algorithm>
#include <memory>
#include <new>

#include "tessera/common/CommaSepValList.h"
#include "tessera/database/ContactItem.h"
#include "tessera/database/ScanIterator.h"
#include "tessera/phonebook/Operation.h"
#include "tessera/phonebook/PhoneBookDBMgr.h"
#include "tessera/phonebook/model/FieldText.h"
#include "tessera/phonebook/model/TelNo.h"

namespace PhoneBook {

using Database::Iterator;
using Database::POlDBIterator;
using Database::POlDBTable;

namespace {

constexpr DWORD groupMask = adwCITypeMaskMap_[PBDBATTR_GROUP];
constexpr DWORD categoriesMask = adwCITypeMaskMap_[PBDBATTR_CATEGORIES];

/// The attributes of an extension row that no record field fills.
enum ExtensionAttr : int { extPodbOid = 0, extName = 1, extTelNo = 2, extFlags = 10 };
constexpr WORD rowFlags = 7;

/// The field of a record as a property of that ident.
CCeDBProp propOfField(const PBRecord& record, const PBAttribute& attribute, WORD ident) {
    if (attribute.text != nullptr) return CCeDBProp::ofText(ident, record.*attribute.text);
    if (attribute.number != nullptr) return CCeDBProp::ofUI4(ident, record.*attribute.number);
    return CCeDBProp::ofR8(ident, record.*attribute.date);
}

/// Null when memory is short.
std::unique_ptr<CCeDBProp> newProp(CCeDBProp value) {
    return std::unique_ptr<CCeDBProp>(new (std::nothrow) CCeDBProp(std::move(value)));
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
    HRESULT getRecord(CCeDBRecord& record) const {
        if (std::ranges::find(props_, nullptr) != props_.end()) return E_OUTOFMEMORY;
        record = CCeDBRecord(props_);
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
    return current.isEmpty() ? group : group + u", " + current.text();
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

HRESULT PhoneBookDBMgr::insertContact(PBRecord& record, DWORD& oid) {
    GatheredProps contact(*this);
    CCeDBRecord row;
    HRESULT result = getTableAttrsFromPBRecord(PBDBTBL_POLCONTACTS, 0, record, contact.array());
    if (SUCCEEDED(result)) result = contact.getRecord(row);
    return SUCCEEDED(result) ? contactsTable()->insertRecord(&row, oid) : result;
}

HRESULT PhoneBookDBMgr::insertExtensionRow(DWORD contactOid, PBRecord& record) {
    if (tables_[PBDBTBL_PHONEBOOKEXT] == nullptr) return E_FAIL;
    const Database::RecordDef& schema = aRecDef_[PBDBTBL_PHONEBOOKEXT];
    const CString primaryNumber = getPBRecordFieldStr(record, getPrimaryTelNoFlag(record));
    GatheredProps extension(*this);
    HRESULT result = getTableAttrsFromPBRecord(PBDBTBL_PHONEBOOKEXT, 0, record, extension.array());
    if (FAILED(result)) return result;
    overwrite(extension.array(), extPodbOid, CCeDBProp::ofUI4(schema.getAttrIdent(extPodbOid), contactOid));
    overwrite(extension.array(), extName, CCeDBProp::ofText(schema.getAttrIdent(extName), record.strName));
    overwrite(extension.array(), extTelNo,
              CCeDBProp::ofText(schema.getAttrIdent(extTelNo), PhoneBook::makeCNIP(primaryNumber)));
    overwrite(extension.array(), extFlags, CCeDBProp::ofUI2(schema.getAttrIdent(extFlags), rowFlags));
    CCeDBRecord row;
    if (result = extension.getRecord(row); FAILED(result)) return result;
    DWORD rowOid = 0;
    return tables_[PBDBTBL_PHONEBOOKEXT]->insertRecord(&row, rowOid);
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

}  // namespace PhoneBook
