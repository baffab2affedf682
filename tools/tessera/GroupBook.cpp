#include "GroupBook.h"

#include <algorithm>
#include <cstdint>
#include <memory>

#include "Arguments.h"
#include "Categories.h"
#include "Failure.h"
#include "Records.h"
#include "tessera/platform/base/Results.h"
#include "tessera/platform/contacts/ContactProperties.h"
#include "tessera/platform/objectstore/StoreChanges.h"

namespace Tool {

namespace {

using PhoneBook::PBDBTBL_AVAILABLEPBGROUP;
using PhoneBook::PBGroupInfo;

struct CategoryChange {
    DWORD oid;
    CString categories;
};

}  // namespace

std::vector<PBGroupInfo> GroupBook::groups() {
    PhoneBook::PhoneBookDBMgr& manager = store_.manager();
    CStringArray names;  // only for what reading them does: the table is in name order then
    store_.require(SUCCEEDED(manager.getAvailablePBGroups(names)));
    std::vector<PBGroupInfo> groups;
    const std::unique_ptr<Database::Iterator> each(
        manager.getIterator(UINT{PBDBTBL_AVAILABLEPBGROUP}, 1, nullptr, nullptr));
    CCeDBRecord row;
    while (each && each->next() == S_OK) {
        if (each->getRecord(&row) != S_OK) continue;
        PBGroupInfo info;
        manager.RecordToPBGroupInfo(manager.getTable(PBDBTBL_AVAILABLEPBGROUP), row, &info, 0);
        groups.push_back(info);
    }
    return groups;
}

std::optional<PBGroupInfo> GroupBook::group(const CString& name) {
    PBGroupInfo info;
    if (FAILED(store_.manager().queryAvailablePBGroup(name, &info))) return std::nullopt;
    return info;
}

std::optional<PBGroupInfo> GroupBook::group(int id) {
    PBGroupInfo info;
    if (FAILED(store_.manager().getAvailablePBGroup(static_cast<DWORD>(id), &info))) return std::nullopt;
    return info;
}

int GroupBook::nextId() {
    int largest = 0;
    for (const Category& category : categories_.inNameOrder())
        largest = std::max(largest, category.id);
    for (const PBGroupInfo& each : groups()) {
        // A larger one follows a category with a negative ID.
        if (each.dwID <= DWORD{largestId}) largest = std::max(largest, static_cast<int>(each.dwID));
    }
    if (largest == largestId) throw Failure("there is no ID left for another group");
    return largest + 1;
}

void GroupBook::renameInContacts(const CString& oldName, const CString& newName) {
    std::vector<CategoryChange> changes;
    DatabaseReader contacts(szContactsDatabase, ContactProperty::fileAs);
    std::uint64_t unused = 0;
    store_.require(contacts.readAll(unused, [&](const RecordView& contact) {
        const auto categories = contact.text(ContactProperty::categories);
        auto renamed = categories ? renamedCategory(*categories, oldName, newName) : std::nullopt;
        if (renamed) changes.push_back({contact.oid(), std::move(*renamed)});
    }));
    for (const CategoryChange& change : changes) {
        if (change.categories.GetLength() > longestText)
            throw Failure("the categories of contact " + std::to_string(change.oid) + " would be too long");
    }
    for (const CategoryChange& change : changes)
        store_.require(writeCategories(change.oid, change.categories));
}

CString groupNameArgument(const std::string& name, const std::string& value) {
    if (value.empty()) throw wrongUsage(name + " is empty");
    return textArgument(name, value);
}

CString newGroupNameArgument(const std::string& name, const std::string& value) {
    CString text = groupNameArgument(name, value);
    if (value.find_first_of(",;\"") != std::string::npos)
        throw wrongUsage(name + " cannot have a comma, a semicolon or a double quote");
    if (value.front() == ' ' || value.back() == ' ') throw wrongUsage(name + " cannot begin or end with a blank");
    if (text.GetLength() > longestText)
        throw wrongUsage(name + " cannot have more than " + std::to_string(longestText) + " characters");
    return text;
}

}  // namespace Tool
