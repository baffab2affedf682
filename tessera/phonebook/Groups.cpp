#include <algorithm>
#include <array>
#include <cstddef>
#include <memory>
#include <utility>

#include "tessera/phonebook/ExtensionRow.h"
#include "tessera/phonebook/Operation.h"
#include "tessera/phonebook/PhoneBookDBMgr.h"
#include "tessera/phonebook/RowFields.h"
#include "tessera/phonebook/TableRows.h"

namespace PhoneBook {

using Database::CeDBTable;
using Database::Iterator;
using Database::Table;

namespace {

/// The groups table's attributes that are told apart.
enum GroupAttr : WORD { groupId = 0, groupName = 1, groupReject = 2 };

/// The members in the order of the table's attributes.
constexpr std::array<RowField<PBGroupInfo>, 7> groupFields = {{
    {.number = &PBGroupInfo::dwID},
    {.text = &PBGroupInfo::strName},
    {.truth = &PBGroupInfo::bReject},
    {.text = &PBGroupInfo::strBellCategory},
    {.text = &PBGroupInfo::strBell},
    {.text = &PBGroupInfo::strSMSBell},
    {.number = &PBGroupInfo::dwFlags},
}};
static_assert(groupFields[groupName].text == &PBGroupInfo::strName);
static_assert(groupFields[groupReject].truth == &PBGroupInfo::bReject);

const Database::AttrDef& attrOfGroup(std::size_t attr) {
    return *PhoneBookDBMgr::aRecDef_[PBDBTBL_AVAILABLEPBGROUP].getAttrDef(static_cast<int>(attr));
}

CCeDBProp keyOf(DWORD id) {
    return CCeDBProp::ofUI4(attrOfGroup(groupId).getIdent(), id);
}

CCeDBProp keyOf(const CString& name) {
    return CCeDBProp::ofText(attrOfGroup(groupName).getIdent(), name);
}

CCeDBRecord rowOf(const PBGroupInfo& info) {
    CCeDBRecord row;
    for (std::size_t i = 0; i < groupFields.size(); ++i)
        row.addProp(propOfField(attrOfGroup(i), info, groupFields[i]));
    return row;
}

/// Copies a row into `info`, from one attribute on, by their places in it.
void takeRow(const CCeDBRecord& row, PBGroupInfo& info, std::size_t firstAttr = groupId) {
    const CCeDBProp none;
    for (std::size_t i = firstAttr; i < groupFields.size(); ++i) {
        const int place = static_cast<int>(i);
        takeProp(place < row.getNumProps() ? row.getPropAt(place) : none, info, groupFields[i]);
    }
}

}  // namespace

void PhoneBookDBMgr::RecordToPBGroupInfo(Table* /*table*/, const CCeDBRecord& record, PBGroupInfo* info, DWORD flags) {
    static_cast<void>(operation([&] {
        takeRow(record, *info, (flags & dwKeepIdAndName_) != 0 ? groupReject : groupId);
        return S_OK;
    }));
}

/// Looks a group up along one attribute, leaving the table in its order. S_FALSE when there is none. `row` may be null.
HRESULT PhoneBookDBMgr::findGroup(WORD attrIdx, CCeDBProp key, DWORD& rowOid, CCeDBRecord* row) {
    CeDBTable* groups = reopenSortedBy(PBDBTBL_AVAILABLEPBGROUP, attrIdx);
    return groups == nullptr ? E_FAIL : seekRow(*groups, std::move(key), rowOid, row);
}

HRESULT PhoneBookDBMgr::readGroup(WORD attrIdx, const CCeDBProp& key, PBGroupInfo* info) {
    if (!isTableOpen(PBDBTBL_AVAILABLEPBGROUP)) return E_FAIL;
    if (info == nullptr) return E_POINTER;
    DWORD rowOid = 0;
    CCeDBRecord row;
    if (findGroup(attrIdx, key, rowOid, &row) != S_OK) return E_FAIL;
    takeRow(row, *info);
    return S_OK;
}

HRESULT PhoneBookDBMgr::getAvailablePBGroup(DWORD id, PBGroupInfo* info) {
    return operation([&] { return readGroup(groupId, keyOf(id), info); });
}

HRESULT PhoneBookDBMgr::queryAvailablePBGroup(const CString& name, PBGroupInfo* info) {
    return operation([&] { return readGroup(groupName, keyOf(name), info); });
}

/// An iterator over the groups in the order of one attribute, in which it leaves the table. Null when there is none.
std::unique_ptr<Iterator> PhoneBookDBMgr::groupsBy(WORD attrIdx) {
    CeDBTable* groups = reopenSortedBy(PBDBTBL_AVAILABLEPBGROUP, attrIdx);
    return std::unique_ptr<Iterator>(groups == nullptr ? nullptr : groups->getIterator(attrIdx, nullptr, nullptr));
}

HRESULT PhoneBookDBMgr::getAvailablePBGroups(CStringArray& names) {
    return operation([&]() -> HRESULT {
        if (!isTableOpen(PBDBTBL_AVAILABLEPBGROUP)) return E_FAIL;
        const std::unique_ptr<Iterator> each = groupsBy(groupName);
        return forEachRow(*cedbTable(PBDBTBL_AVAILABLEPBGROUP), each.get(), [&](const CCeDBRecord& row) {
            names.Add(shownProp(row, aRecDef_[PBDBTBL_AVAILABLEPBGROUP], groupName).getText());
        });
    });
}

HRESULT PhoneBookDBMgr::getNextAvailablePBGroupID(DWORD* id) {
    return operation([&]() -> HRESULT {
        if (!isTableOpen(PBDBTBL_AVAILABLEPBGROUP)) return E_FAIL;
        if (id == nullptr) return E_POINTER;
        const std::unique_ptr<Iterator> each = groupsBy(groupId);
        DWORD largest = 0;
        const HRESULT walked =
            forEachRow(*cedbTable(PBDBTBL_AVAILABLEPBGROUP), each.get(), [&](const CCeDBRecord& row) {
                largest = std::max(largest, shownProp(row, aRecDef_[PBDBTBL_AVAILABLEPBGROUP], groupId).getUI4());
            });
        if (SUCCEEDED(walked)) *id = largest + 1;
        return walked;
    });
}

HRESULT PhoneBookDBMgr::initAvailablePBGroup() {
    return writingOperationOn(categories_, [&]() -> HRESULT {
        if (!isTableOpen(PBDBTBL_CATEGORIES)) return E_FAIL;
        const std::unique_ptr<Iterator> each(getIterator(UINT{PBDBTBL_CATEGORIES}, 0, nullptr, nullptr));
        if (each == nullptr) return E_FAIL;
        HRESULT result = S_OK;
        while (each->next() == S_OK) {
            const std::int16_t id = each->getProp(1).getI2();
            PBGroupInfo group;
            group.dwID = static_cast<DWORD>(id);
            group.strName = each->getProp(0).getText();
            result = writeAvailablePBGroup(group.dwID, &group, dwKeepIdAndName_);
            if (SUCCEEDED(result)) categories_.SetAt(each->getCur(), id);
        }
        return result;
    });
}

HRESULT PhoneBookDBMgr::insertAvailablePBGroup(PBGroupInfo* info, bool newId) {
    return writingOperation([&]() -> HRESULT {
        if (!isTableOpen(PBDBTBL_AVAILABLEPBGROUP)) return E_FAIL;
        if (info == nullptr) return E_POINTER;
        DWORD id = info->dwID;
        if (newId) {
            if (const HRESULT result = getNextAvailablePBGroupID(&id); FAILED(result)) return result;
        }
        info->dwFlags = dwRowFlags_;
        PBGroupInfo stored = *info;  // the caller's keeps the ID that it has
        stored.dwID = id;
        CCeDBRecord row = rowOf(stored);
        DWORD rowOid = 0;
        return tables_[PBDBTBL_AVAILABLEPBGROUP]->insertRecord(&row, rowOid) == S_OK ? S_OK : E_FAIL;
    });
}

HRESULT PhoneBookDBMgr::deleteAvailablePBGroup(DWORD id) {
    return writingOperation([&]() -> HRESULT {
        if (!isTableOpen(PBDBTBL_AVAILABLEPBGROUP)) return E_FAIL;
        DWORD rowOid = 0;
        CCeDBRecord row;
        if (findGroup(groupId, keyOf(id), rowOid, &row) != S_OK) return E_FAIL;
        PBGroupInfo group;
        takeRow(row, group);
        if (const HRESULT result = tables_[PBDBTBL_AVAILABLEPBGROUP]->deleteRecord(rowOid); FAILED(result))
            return result;
        return modifyPBGroupInPBRecord(group.strName, CString());
    });
}

HRESULT PhoneBookDBMgr::deleteAvailablePBGroup(const CString& name) {
    return writingOperation([&]() -> HRESULT {
        if (!isTableOpen(PBDBTBL_AVAILABLEPBGROUP)) return E_FAIL;
        CeDBTable* groups = reopenSortedBy(PBDBTBL_AVAILABLEPBGROUP, groupName);
        if (groups == nullptr) return E_FAIL;
        CCeDBProp key = keyOf(name);
        if (const HRESULT result = groups->deleteRecord(key); result != S_OK) return result;
        return modifyPBGroupInPBRecord(name, CString());
    });
}

HRESULT PhoneBookDBMgr::writeAvailablePBGroup(DWORD id, PBGroupInfo* info, DWORD flags) {
    return writingOperation([&]() -> HRESULT {
        if (!isTableOpen(PBDBTBL_AVAILABLEPBGROUP)) return E_FAIL;
        if (info == nullptr) return E_POINTER;
        DWORD rowOid = 0;
        CCeDBRecord stored;
        const HRESULT query = findGroup(groupId, keyOf(id), rowOid, &stored);
        if (FAILED(query)) return E_FAIL;
        if (query == S_FALSE) return insertAvailablePBGroup(info, false);
        if ((flags & dwKeepIdAndName_) != 0) takeRow(stored, *info, groupReject);
        return updateAvailablePBGroup(rowOid, info);
    });
}

HRESULT PhoneBookDBMgr::writeAvailablePBGroup(CString& name, PBGroupInfo* info) {
    return writingOperation([&]() -> HRESULT {
        if (!isTableOpen(PBDBTBL_AVAILABLEPBGROUP)) return E_FAIL;
        if (info == nullptr) return E_POINTER;
        DWORD rowOid = 0;
        const HRESULT query = findGroup(groupName, keyOf(name), rowOid, nullptr);
        if (FAILED(query)) return E_FAIL;
        if (query == S_FALSE) return insertAvailablePBGroup(info, true);
        // All of `info` goes into the row, its ID too.
        if (const HRESULT result = updateAvailablePBGroup(rowOid, info); FAILED(result)) return result;
        return modifyPBGroupInPBRecord(name, info->strName);
    });
}

HRESULT PhoneBookDBMgr::updateAvailablePBGroup(DWORD oid, PBGroupInfo* info) {
    return writingOperation([&]() -> HRESULT {
        if (!isTableOpen(PBDBTBL_AVAILABLEPBGROUP)) return E_FAIL;
        if (info == nullptr) return E_POINTER;
        info->dwFlags = dwRowFlags_;
        CCeDBRecord row = rowOf(*info);
        return tables_[PBDBTBL_AVAILABLEPBGROUP]->updateRecord(oid, &row, 0, nullptr) == S_OK ? S_OK : E_FAIL;
    });
}

HRESULT PhoneBookDBMgr::modifyPBGroupInPBRecord(const CString& oldName, const CString& newName) {
    return writingOperation([&]() -> HRESULT {
        if (!isTableOpen(PBDBTBL_PHONEBOOKEXT)) return E_FAIL;
        if (oldName == newName) return S_OK;
        CeDBTable* extensions = reopenSortedBy(PBDBTBL_PHONEBOOKEXT, extGroup);
        if (extensions == nullptr) return E_FAIL;
        const WORD ident = identOfExtension(extGroup);
        CCeDBProp key = CCeDBProp::ofText(ident, oldName);
        const std::unique_ptr<Iterator> members(getIterator(UINT{PBDBATTR_GROUP}, &key, &key));
        if (members == nullptr) return E_FAIL;
        const CCeDBProp group = CCeDBProp::ofText(ident, newName);
        HRESULT result = S_OK;
        CCeDBRecord row;
        while (members->next() == S_OK) {
            result = members->getRecord(&row);
            if (FAILED(result)) continue;
            row.replaceProp(group);
            result = extensions->updateRecord(members->getCur(), &row, 0, nullptr);
            if (SUCCEEDED(result)) row.removeAll();
        }
        return result;
    });
}

HRESULT PhoneBookDBMgr::rejectPBGroup(const CString& name, bool reject) {
    return writingOperation([&]() -> HRESULT {
        PBGroupInfo group;
        if (const HRESULT result = queryAvailablePBGroup(name, &group); FAILED(result)) return result;
        group.bReject = reject ? TRUE : FALSE;
        return updateAvailablePBGroup(0, &group);  // 0: the row that the query has just reached
    });
}

}  // namespace PhoneBook
