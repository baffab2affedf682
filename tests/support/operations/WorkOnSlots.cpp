#include <functional>

#include "tessera/phonebook/model/TelNo.h"
#include "tests/support/operations/Kinds.h"

namespace testing_support::work {

using namespace PhoneBook;

namespace {

/// An operation on a slot that is given an entry.
template <class Operation>
PhoneBookOperation withEntry(Parameters& parameters, std::string_view name, Operation operation) {
    const DWORD slot = parameters.slot();
    const SpeedDialInfo entry = parameters.entry();
    return {described(name, slot, entry), [=](PhoneBookDBMgr& manager) {
                SpeedDialInfo given = entry;
                return std::invoke(operation, manager, slot, &given);
            }};
}

/// The same, given an entry or none.
template <class Operation>
PhoneBookOperation withEntryOrNone(Parameters& parameters, std::string_view name, Operation operation) {
    if (!parameters.oneIn(3)) return withEntry(parameters, name, operation);
    const DWORD slot = parameters.slot();
    return {described(name, slot), [=](PhoneBookDBMgr& manager) {
                return std::invoke(operation, manager, slot, static_cast<SpeedDialInfo*>(nullptr));
            }};
}

/// An operation without parameters.
template <class Operation>
PhoneBookOperation plain(std::string_view name, Operation operation) {
    return {described(name), [=](PhoneBookDBMgr& manager) { return operation(manager); }};
}

PhoneBookOperation insert(Parameters& parameters) {
    return withEntry(parameters, "insertSpeedDialInfo", &PhoneBookDBMgr::insertSpeedDialInfo);
}

PhoneBookOperation update(Parameters& parameters) {
    const CEOID row = parameters.recordOf(aszTableName_[PBDBTBL_SPEEDDIALNO]);
    const SpeedDialInfo entry = parameters.entry();
    return {described("updateSpeedDialInfo", row, entry), [=](PhoneBookDBMgr& manager) {
                SpeedDialInfo given = entry;
                return manager.updateSpeedDialInfo(row, &given);
            }};
}

PhoneBookOperation write(Parameters& parameters) {
    return withEntry(parameters, "writeSpeedDialInfo", &PhoneBookDBMgr::writeSpeedDialInfo);
}

PhoneBookOperation erase(Parameters& parameters) {
    return withEntryOrNone(parameters, "deleteSpeedDialInfo", &PhoneBookDBMgr::deleteSpeedDialInfo);
}

PhoneBookOperation move(Parameters& parameters) {
    const DWORD to = parameters.slot();
    PhoneBookOperation moved = withEntryOrNone(parameters, "moveSpeedDialInfo",
                                               [to](PhoneBookDBMgr& manager, DWORD from, SpeedDialInfo* info) {
                                                   return manager.moveSpeedDialInfo(from, to, info);
                                               });
    moved.description += " to " + std::to_string(to);
    return moved;
}

PhoneBookOperation eraseAll(Parameters& parameters) {
    if (!parameters.oneIn(3)) return erase(parameters);
    return plain("deleteAllSpeedDialInfos", [](PhoneBookDBMgr& manager) { return manager.deleteAllSpeedDialInfos(); });
}

PhoneBookOperation linkByNumber(Parameters& parameters) {
    const DWORD slot = parameters.slot();
    const CString number = makeCNIP(parameters.number());
    const DWORD telType = parameters.telType();
    return {described("setSDialIDInPBExt", slot, number, telType),
            [=](PhoneBookDBMgr& manager) { return manager.setSDialIDInPBExt(slot, number, telType); }};
}

PhoneBookOperation linkByContact(Parameters& parameters) {
    const DWORD slot = parameters.slot();
    const CEOID contact = parameters.contact();
    const DWORD telType = parameters.telType();
    return {described("setSDialIDInPBExt", slot, contact, telType), [=](PhoneBookDBMgr& manager) {
                DWORD oid = contact;
                return manager.setSDialIDInPBExt(slot, oid, telType);
            }};
}

// The cache: it shows in the store when it is flushed.

PhoneBookOperation fillCache(Parameters&) {
    return plain("fillSDialInfoCache", [](PhoneBookDBMgr& manager) { return manager.fillSDialInfoCache(); });
}

PhoneBookOperation clearCache(Parameters&) {
    return plain("clearSDialInfoCache", [](PhoneBookDBMgr& manager) { return manager.clearSDialInfoCache(); });
}

PhoneBookOperation writeCache(Parameters& parameters) {
    return withEntry(parameters, "writeSDialInfoCache", &PhoneBookDBMgr::writeSDialInfoCache);
}

PhoneBookOperation eraseInCache(Parameters& parameters) {
    return withEntryOrNone(parameters, "deleteSDialInfoCache", &PhoneBookDBMgr::deleteSDialInfoCache);
}

PhoneBookOperation moveInCache(Parameters& parameters) {
    const DWORD from = parameters.slot();
    const DWORD to = parameters.slot();
    return {described("moveSDialInfoCache", from, to),
            [=](PhoneBookDBMgr& manager) { return manager.moveSDialInfoCache(from, to); }};
}

PhoneBookOperation flushCache(Parameters&) {
    return plain("flushSDialInfoCache", [](PhoneBookDBMgr& manager) { return manager.flushSDialInfoCache(); });
}

constexpr Kind kinds[] = {{5, insert},     {3, update},       {6, write},         {6, erase},     {4, move},
                          {1, eraseAll},   {2, linkByNumber}, {2, linkByContact}, {3, fillCache}, {1, clearCache},
                          {4, writeCache}, {2, eraseInCache}, {2, moveInCache},   {5, flushCache}};

}  // namespace

std::span<const Kind> kindsOnSlots() {
    return kinds;
}

}  // namespace testing_support::work
