#pragma once

#include <memory>
#include <ostream>
#include <tuple>
#include <utility>
#include <vector>

#include "tessera/phonebook/PhoneBookDBMgr.h"
#include "tests/support/Values.h"

// What tests of the call history share: entries, and the rows as they are stored.

namespace PhoneBook {

inline auto tied(const CallEntry& call) {
    return std::tuple(ticksOf(call.ftTimestamp), std::tie(call.strCID, call.strName, call.strCNAP, call.strCDNIP),
                      std::tuple(call.dwCallingTime, call.dwCallType, call.dwTelType, call.dwFlags));
}

inline bool operator==(const CallEntry& left, const CallEntry& right) {
    return tied(left) == tied(right);
}

inline std::ostream& operator<<(std::ostream& out, const CallEntry& call) {
    return out << "{at " << ticksOf(call.ftTimestamp) << " from " << call.strCID << " named " << call.strName << ", "
               << call.strCNAP << ", " << call.strCDNIP << ", took " << call.dwCallingTime << ", type "
               << call.dwCallType << ", number " << call.dwTelType << ", flags " << call.dwFlags << "}";
}

namespace calls_test {

inline CallEntry call(std::uint64_t ticks, WStringView cid = TEXT("5550000"), WStringView name = {}) {
    CallEntry entry;
    entry.ftTimestamp = fileTimeOf(ticks);
    entry.strCID = CString(cid);
    entry.strName = CString(name);
    return entry;
}

/// A row with everything but its "Hint", which is 0.
inline CCeDBRecord rowOf(const CallEntry& entry) {
    CCeDBRecord row;
    row.addProp(CCeDBProp::ofFileTime(0x400, entry.ftTimestamp));
    row.addProp(CCeDBProp::ofText(0x401, entry.strCID));
    row.addProp(CCeDBProp::ofText(0x402, entry.strName));
    row.addProp(CCeDBProp::ofUI4(0x403, entry.dwTelType));
    row.addProp(CCeDBProp::ofUI4(0x404, entry.dwCallingTime));
    row.addProp(CCeDBProp::ofUI4(0x405, entry.dwCallType));
    row.addProp(CCeDBProp::ofText(0x406, entry.strCNAP));
    row.addProp(CCeDBProp::ofText(0x407, entry.strCDNIP));
    row.addProp(CCeDBProp::ofUI4(0x408, 0));
    row.addProp(CCeDBProp::ofUI2(0x409, static_cast<WORD>(entry.dwFlags)));
    return row;
}

inline CallEntry entryOf(const CCeDBRecord& row) {
    const auto prop = [&row](WORD ident) {
        const CCeDBProp* found = row.findProp(ident);
        return found != nullptr ? *found : CCeDBProp();
    };
    CallEntry entry;
    entry.ftTimestamp = prop(0x400).getFileTime();
    entry.strCID = prop(0x401).getText();
    entry.strName = prop(0x402).getText();
    entry.dwTelType = prop(0x403).getUI4();
    entry.dwCallingTime = prop(0x404).getUI4();
    entry.dwCallType = prop(0x405).getUI4();
    entry.strCNAP = prop(0x406).getText();
    entry.strCDNIP = prop(0x407).getText();
    entry.dwFlags = prop(0x409).getUI2();
    return entry;
}

/// Adds a row as another program would; answers its identifier, 0 when it was not added.
inline DWORD addRow(PhoneBookDBMgr& manager, const CCeDBRecord& row) {
    CCeDBRecord copy = row;
    DWORD oid = 0;
    const HRESULT added = manager.getTable(PBDBTBL_CALLHISTORY)->insertRecord(&copy, oid);
    return added == S_OK ? oid : 0;
}

using LoggedCalls = std::vector<std::pair<DWORD, CallEntry>>;

/// Every row with its identifier, newest first.
inline LoggedCalls loggedCalls(PhoneBookDBMgr& manager) {
    const std::unique_ptr<Database::Iterator> rows(manager.getIterator(UINT{PBDBTBL_CALLHISTORY}, 0, nullptr, nullptr));
    LoggedCalls calls;
    CCeDBRecord row;
    for (int i = 0; i < rows->getNumItems() && rows->getRecordAt(i, &row) == S_OK; ++i)
        calls.emplace_back(rows->getCur(), entryOf(row));
    return calls;
}

}  // namespace calls_test
}  // namespace PhoneBook
