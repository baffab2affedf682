#include <algorithm>

#include "tests/support/operations/Kinds.h"

namespace testing_support::work {

using namespace PhoneBook;

namespace {

constexpr WORD idOfGroup = 0x300;

/// An ID that no group has: two rows of one ID are the caller's own doing.
DWORD freeGroupId(Parameters& parameters) {
    const StoredDatabase groups = contentsOfDatabase(aszTableName_[PBDBTBL_AVAILABLEPBGROUP]);
    const auto isTaken = [&](DWORD id) {
        return std::ranges::any_of(
            groups.records, [id](const StoredRecord& row) { return row.properties.getProp(idOfGroup).getUI4() == id; });
    };
    DWORD id = parameters.groupId();
    while (isTaken(id))
        ++id;
    return id;
}

PhoneBookOperation insertNext(Parameters& parameters) {
    const PBGroupInfo group = parameters.group();
    return {described("insertAvailablePBGroup with the next ID", group), [group](PhoneBookDBMgr& manager) {
                PBGroupInfo given = group;
                return manager.insertAvailablePBGroup(&given, true);
            }};
}

PhoneBookOperation insertOwn(Parameters& parameters) {
    PBGroupInfo group = parameters.group();
    group.dwID = freeGroupId(parameters);
    return {described("insertAvailablePBGroup", group), [group](PhoneBookDBMgr& manager) {
                PBGroupInfo given = group;
                return manager.insertAvailablePBGroup(&given, false);
            }};
}

PhoneBookOperation eraseById(Parameters& parameters) {
    const DWORD id = parameters.groupId();
    return {described("deleteAvailablePBGroup", id),
            [id](PhoneBookDBMgr& manager) { return manager.deleteAvailablePBGroup(id); }};
}

PhoneBookOperation eraseByName(Parameters& parameters) {
    const CString name = parameters.groupName();
    return {described("deleteAvailablePBGroup", name),
            [name](PhoneBookDBMgr& manager) { return manager.deleteAvailablePBGroup(name); }};
}

PhoneBookOperation writeById(Parameters& parameters) {
    const PBGroupInfo group = parameters.group();
    const DWORD flags = parameters.below(2);
    return {described("writeAvailablePBGroup", group.dwID, group, flags), [=](PhoneBookDBMgr& manager) {
                PBGroupInfo given = group;
                return manager.writeAvailablePBGroup(given.dwID, &given, flags);
            }};
}

/// As a client changes a group: reads it, changes what it has read, and writes that.
PhoneBookOperation writeByName(Parameters& parameters) {
    const CString name = parameters.groupName();
    const PBGroupInfo group = parameters.group();
    return {described("writeAvailablePBGroup", name, group), [=](PhoneBookDBMgr& manager) {
                CString before = name;
                PBGroupInfo read;
                PBGroupInfo given = group;
                if (SUCCEEDED(manager.queryAvailablePBGroup(name, &read))) given.dwID = read.dwID;
                return manager.writeAvailablePBGroup(before, &given);
            }};
}

PhoneBookOperation update(Parameters& parameters) {
    const StoredRecord row = parameters.row(PBDBTBL_AVAILABLEPBGROUP);
    PBGroupInfo group = parameters.group();
    group.dwID = row.properties.getProp(idOfGroup).getUI4();
    const CEOID oid = row.oid != 0 ? row.oid : CEOID{0x7FFFFFFF};
    return {described("updateAvailablePBGroup", oid, group), [=](PhoneBookDBMgr& manager) {
                PBGroupInfo given = group;
                return manager.updateAvailablePBGroup(oid, &given);
            }};
}

PhoneBookOperation reject(Parameters& parameters) {
    const CString name = parameters.groupName();
    const bool isRejected = parameters.oneIn(2);
    return {described("rejectPBGroup", name, isRejected),
            [=](PhoneBookDBMgr& manager) { return manager.rejectPBGroup(name, isRejected); }};
}

PhoneBookOperation moveMembers(Parameters& parameters) {
    const CString from = parameters.groupName();
    const CString to = parameters.groupName();
    return {described("modifyPBGroupInPBRecord", from, to),
            [=](PhoneBookDBMgr& manager) { return manager.modifyPBGroupInPBRecord(from, to); }};
}

PhoneBookOperation makeGroups(Parameters&) {
    return {described("initAvailablePBGroup"), [](PhoneBookDBMgr& manager) {
                Database::Table* categories = manager.getTable(PBDBTBL_CATEGORIES);
                if (categories == nullptr || !categories->open(nullptr)) return E_FAIL;
                const HRESULT result = manager.initAvailablePBGroup();
                categories->close();
                return result;
            }};
}

// Calls

PhoneBookOperation log(Parameters& parameters) {
    const CallEntry call = parameters.call();
    return {described("insertCallEntry", call), [call](PhoneBookDBMgr& manager) {
                CallEntry given = call;
                return manager.insertCallEntry(&given);
            }};
}

/// So many that the history is soon full.
PhoneBookOperation logMany(Parameters& parameters) {
    const CallEntry call = parameters.call();
    const unsigned count = 20 + parameters.below(60);
    return {described("insertCallEntry", count, call), [=](PhoneBookDBMgr& manager) {
                return asOneUnit([&] {
                    HRESULT result = S_OK;
                    for (unsigned i = 0; i < count && SUCCEEDED(result); ++i) {
                        CallEntry given = call;
                        given.ftTimestamp = fileTimeOf(ticksOf(call.ftTimestamp) + i);
                        result = manager.insertCallEntry(&given);
                    }
                    return result;
                });
            }};
}

PhoneBookOperation eraseCall(Parameters& parameters) {
    const CEOID row = parameters.recordOf(aszTableName_[PBDBTBL_CALLHISTORY]);
    return {described("deleteCallEntry", row), [row](PhoneBookDBMgr& manager) { return manager.deleteCallEntry(row); }};
}

PhoneBookOperation eraseAllCalls(Parameters&) {
    return {described("deleteAllCallEntries"), [](PhoneBookDBMgr& manager) { return manager.deleteAllCallEntries(); }};
}

constexpr Kind kinds[] = {{4, insertNext},  {2, insertOwn}, {2, eraseById}, {2, eraseByName},  {3, writeById},
                          {4, writeByName}, {2, update},    {3, reject},    {3, moveMembers},  {1, makeGroups},
                          {8, log},         {1, logMany},   {3, eraseCall}, {1, eraseAllCalls}};

}  // namespace

std::span<const Kind> kindsOnGroupsAndCalls() {
    return kinds;
}

}  // namespace testing_support::work
