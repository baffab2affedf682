#include <algorithm>
#include <memory>

#include "tessera/phonebook/Operation.h"
#include "tessera/phonebook/PhoneBookDBMgr.h"

namespace PhoneBook {

using Database::CeDBTable;
using Database::Iterator;
using Database::Table;

namespace {

/// The groups table's attributes.
enum GroupAttr : WORD {
    groupId = 0,
    groupName = 1,
    groupReject = 2,
    groupBellCategory = 3,
    groupBell = 4,
    groupSmsBell = 5,
    groupFlags = 6,
};
constexpr WORD rowFlags = 7;
constexpr DWORD keepIdAndName = 0x1;

WORD identOfGroup(GroupAttr attr) {
    return PhoneBookDBMgr::aRecDef_[PBDBTBL_AVAILABLEPBGROUP].getAttrIdent(attr);
}

CCeDBRecord rowOf(const PBGroupInfo& info, DWORD id) {
    CCeDBRecord row;
    row.addProp(CCeDBProp::ofUI4(identOfGroup(groupId), id));
    row.addProp(CCeDBProp::ofText(identOfGroup(groupName), info.strName));
    row.addProp(CCeDBProp::ofBool(identOfGroup(groupReject), info.bReject != FALSE));
    row.addProp(CCeDBProp::ofText(identOfGroup(groupBellCategory), info.strBellCategory));
    row.addProp(CCeDBProp::ofText(identOfGroup(groupBell), info.strBell));
    row.addProp(CCeDBProp::ofText(identOfGroup(groupSmsBell), info.strSMSBell));
    row.addProp(CCeDBProp::ofUI2(identOfGroup(groupFlags), static_cast<WORD>(info.dwFlags)));
    return row;
}

}  // namespace

void PhoneBookDBMgr::RecordToPBGroupInfo(Table* /*table*/, const CCeDBRecord& record, PBGroupInfo* info, DWORD flags) {
    const CCeDBProp none;
    const auto at = [&](GroupAttr attr) -> const CCeDBProp& {
        return attr < record.getNumProps() ? record.getPropAt(attr) : none;
    };
    if ((flags & keepIdAndName) == 0) {
        info->dwID = at(groupId).getUI4();
        info->strName = at(groupName).getText();
    }
    info->bReject = at(groupReject).getBool() ? TRUE : FALSE;
    info->strBellCategory = at(groupBellCategory).getText();
    info->strBell = at(groupBell).getText();
    info->strSMSBell = at(groupSmsBell).getText();
    info->dwFlags = at(groupFlags).getUI2();
}

HRESULT PhoneBookDBMgr::getNextAvailablePBGroupID(DWORD* id) {
    return operation([&]() -> HRESULT {
        if (!isTableOpen(PBDBTBL_AVAILABLEPBGROUP)) return E_FAIL;
        if (id == nullptr) return E_POINTER;
        CeDBTable* groups = reopenSortedBy(PBDBTBL_AVAILABLEPBGROUP, groupId);
        if (groups == nullptr) return E_FAIL;
        DWORD largest = 0;
        const std::unique_ptr<Iterator> each(groups->getIterator(groupId, nullptr, nullptr));
        while (each != nullptr && each->next() == S_OK)
            largest = std::max(largest, each->getProp(groupId).getUI4());
        *id = largest + 1;
        return S_OK;
    });
}

HRESULT PhoneBookDBMgr::initAvailablePBGroup() {
    return writingOperation([&]() -> HRESULT {
        if (!isTableOpen(PBDBTBL_CATEGORIES)) return E_FAIL;
        const std::unique_ptr<Iterator> each(getIterator(UINT{PBDBTBL_CATEGORIES}, 0, nullptr, nullptr));
        if (each == nullptr) return E_FAIL;
        HRESULT result = S_OK;
        while (each->next() == S_OK) {
            const std::int16_t id = each->getProp(1).getI2();
            PBGroupInfo group;
            group.dwID = static_cast<DWORD>(id);
            group.strName = each->getProp(0).getText();
            result = writeAvailablePBGroup(group.dwID, &group, keepIdAndName);
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
        info->dwFlags = rowFlags;
        CCeDBRecord row = rowOf(*info, id);
        DWORD rowOid = 0;
        return tables_[PBDBTBL_AVAILABLEPBGROUP]->insertRecord(&row, rowOid) == S_OK ? S_OK : E_FAIL;
    });
}

HRESULT PhoneBookDBMgr::writeAvailablePBGroup(DWORD id, PBGroupInfo* info, DWORD flags) {
    return writingOperation([&]() -> HRESULT {
        if (!isTableOpen(PBDBTBL_AVAILABLEPBGROUP)) return E_FAIL;
        if (info == nullptr) return E_POINTER;
        CeDBTable* groups = reopenSortedBy(PBDBTBL_AVAILABLEPBGROUP, groupId);
        if (groups == nullptr) return E_FAIL;
        CCeDBProp key = CCeDBProp::ofUI4(identOfGroup(groupId), id);
        DWORD rowOid = 0;
        CCeDBRecord stored;
        const HRESULT query = groups->queryRecord(key, &rowOid, &stored);
        if (FAILED(query)) return E_FAIL;
        if (query == S_FALSE) return insertAvailablePBGroup(info, false);
        if ((flags & keepIdAndName) != 0) RecordToPBGroupInfo(groups, stored, info, keepIdAndName);
        return updateAvailablePBGroup(rowOid, info);
    });
}

HRESULT PhoneBookDBMgr::updateAvailablePBGroup(DWORD oid, PBGroupInfo* info) {
    return writingOperation([&]() -> HRESULT {
        if (!isTableOpen(PBDBTBL_AVAILABLEPBGROUP)) return E_FAIL;
        if (info == nullptr) return E_POINTER;
        info->dwFlags = rowFlags;
        CCeDBRecord row = rowOf(*info, info->dwID);
        return tables_[PBDBTBL_AVAILABLEPBGROUP]->updateRecord(oid, &row, 0, nullptr) == S_OK ? S_OK : E_FAIL;
    });
}

}  // namespace PhoneBook
