#pragma once

#include <map>
#include <memory>
#include <ostream>
#include <tuple>

#include "tessera/phonebook/PhoneBookDBMgr.h"
#include "tests/support/Values.h"

// What tests of the groups share: the rows as they are stored.

namespace PhoneBook {

inline auto tied(const PBGroupInfo& group) {
    return std::tie(group.dwID, group.strName, group.bReject, group.strBellCategory, group.strBell, group.strSMSBell,
                    group.dwFlags);
}

inline bool operator==(const PBGroupInfo& left, const PBGroupInfo& right) {
    return tied(left) == tied(right);
}

inline std::ostream& operator<<(std::ostream& out, const PBGroupInfo& group) {
    return out << "{" << group.dwID << " " << group.strName << ", reject " << group.bReject << ", "
               << group.strBellCategory << ", " << group.strBell << ", " << group.strSMSBell << ", flags "
               << group.dwFlags << "}";
}

namespace groups_test {

/// Every row of a table by its identifier, whatever order the table is open in.
template <class Value, class Read>
std::map<DWORD, Value> rowsOf(PhoneBookDBMgr& manager, UINT tableId, Read read) {
    const std::unique_ptr<Database::Iterator> all(manager.getIterator(tableId, 0, nullptr, nullptr));
    std::map<DWORD, Value> rows;
    CCeDBRecord row;
    for (int i = 0; i < all->getNumItems() && all->getRecordAt(i, &row) == S_OK; ++i)
        rows.emplace(all->getCur(), read(row));
    return rows;
}

inline std::map<DWORD, PBGroupInfo> storedGroups(PhoneBookDBMgr& manager) {
    return rowsOf<PBGroupInfo>(manager, PBDBTBL_AVAILABLEPBGROUP, [](const CCeDBRecord& row) {
        PBGroupInfo group;
        group.dwID = row.findProp(0x300)->getUI4();
        group.strName = row.findProp(0x301)->getText();
        group.bReject = row.findProp(0x302)->getBool() ? TRUE : FALSE;
        group.strBellCategory = row.findProp(0x303)->getText();
        group.strBell = row.findProp(0x304)->getText();
        group.strSMSBell = row.findProp(0x305)->getText();
        group.dwFlags = row.findProp(0x306)->getUI2();
        return group;
    });
}

/// The group of each contact that has an extension row, by the contact's identifier.
inline std::map<DWORD, CString> groupsOfContacts(PhoneBookDBMgr& manager) {
    std::map<DWORD, CString> groups;
    for (const auto& [oid, row] : rowsOf<CCeDBRecord>(manager, PBDBTBL_PHONEBOOKEXT, std::identity()))
        groups.emplace(row.findProp(0x100)->getUI4(), row.findProp(0x103)->getText());
    return groups;
}

// The platform's categories, as another program would write them.

inline CCeDBRecord categoryRow(const CString& name, std::int16_t id) {
    CCeDBRecord row;
    row.addProp(CCeDBProp::ofText(0x4001, name));
    row.addProp(CCeDBProp::ofI2(0x4002, id));
    return row;
}

/// Answers the record's identifier, 0 when it was not added.
inline CEOID addCategory(const CString& name, std::int16_t id) {
    Database::CeDBTable categories(TEXT("\\Categories Database"), &PhoneBookDBMgr::aRecDef_[PBDBTBL_CATEGORIES]);
    CCeDBRecord row = categoryRow(name, id);
    DWORD oid = 0;
    return categories.open(nullptr) && categories.insertRecord(&row, oid) == S_OK ? oid : 0;
}

inline bool writeCategory(CEOID oid, const CString& name, std::int16_t id) {
    Database::CeDBTable categories(TEXT("\\Categories Database"), &PhoneBookDBMgr::aRecDef_[PBDBTBL_CATEGORIES]);
    CCeDBRecord row = categoryRow(name, id);
    return categories.open(nullptr) && categories.updateRecord(oid, &row, 0, nullptr) == S_OK;
}

inline bool deleteCategory(CEOID oid) {
    Database::CeDBTable categories(TEXT("\\Categories Database"), &PhoneBookDBMgr::aRecDef_[PBDBTBL_CATEGORIES]);
    return categories.open(nullptr) && categories.deleteRecord(oid) == S_OK;
}

}  // namespace groups_test
}  // namespace PhoneBook
