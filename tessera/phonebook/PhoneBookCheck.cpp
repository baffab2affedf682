#include "tessera/phonebook/PhoneBookCheck.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <tuple>

#include "tessera/phonebook/Operation.h"
#include "tessera/phonebook/PhoneBookRules.h"
#include "tessera/phonebook/PhoneBookTables.h"
#include "tessera/platform/contacts/ContactProperties.h"
#include "tessera/platform/objectstore/StoreChanges.h"

namespace PhoneBook {

namespace {

using Kind = PhoneBookFinding::Kind;

/// The change that was missed, and who follows it.
struct Remedy {
    Kind kind;
    std::optional<DWORD> PhoneBookFinding::*record;
    HRESULT (PhoneBookDBMgr::*follow)(const CENOTIFICATION*);
};

constexpr Remedy remedies[] = {
    {Kind::contactWithoutRow, &PhoneBookFinding::contact, &PhoneBookDBMgr::onCEOIDCreatedContacts},
    {Kind::rowOfMissingContact, &PhoneBookFinding::contact, &PhoneBookDBMgr::onCEOIDRecordDeletedContacts},
    {Kind::rowOfNoContact, &PhoneBookFinding::contact, &PhoneBookDBMgr::onCEOIDRecordDeletedContacts},
    {Kind::lostGroup, &PhoneBookFinding::contact, &PhoneBookDBMgr::onCEOIDChangedContacts},
    {Kind::groupOfAnotherName, &PhoneBookFinding::category, &PhoneBookDBMgr::onCEOIDCreatedCategories},
    {Kind::categoryWithoutGroup, &PhoneBookFinding::category, &PhoneBookDBMgr::onCEOIDCreatedCategories},
};

HRESULT readAsOfOneMoment(PhoneBookTables& tables) {
    const DatabaseReader store(szContactsDatabase, ContactProperty::fileAs);
    const StoreStamp before = store.stamp();
    const HRESULT result = tables.read();
    if (store.stamp() == before) return result;
    return writingOperation([&] {  // with the turn for writing nobody else writes
        tables = PhoneBookTables();
        return tables.read();
    });
}

/// What tells one finding from another, whatever is said of it.
auto identityOf(const PhoneBookFinding& finding) {
    return std::tuple(finding.kind, finding.contact, finding.row, finding.slot, finding.group, finding.category,
                      finding.name);
}

/// What could be mended and is no longer there.
std::vector<PhoneBookFinding> mendedOf(const std::vector<PhoneBookFinding>& before,
                                       const std::vector<PhoneBookFinding>& after) {
    std::set<decltype(identityOf(before.front()))> still;
    for (const PhoneBookFinding& finding : after)
        still.insert(identityOf(finding));
    std::vector<PhoneBookFinding> mended;
    std::ranges::copy_if(before, std::back_inserter(mended), [&](const PhoneBookFinding& finding) {
        return finding.canBeMended && !still.contains(identityOf(finding));
    });
    return mended;
}

}  // namespace

HRESULT PhoneBookCheck::examine(std::vector<PhoneBookFinding>& findings) {
    findings.clear();
    return operation([&] {
        PhoneBookTables tables;
        const HRESULT result = readAsOfOneMoment(tables);
        if (FAILED(result)) return result;
        for (const auto check : {checkContacts, checkSpeedDial, checkGroups, checkCalls})
            check(tables, findings);
        return result;
    });
}

HRESULT PhoneBookCheck::mend(std::vector<PhoneBookFinding>& mended, std::vector<PhoneBookFinding>& left) {
    mended.clear();
    left.clear();
    const auto followAll = [&]() -> HRESULT {
        std::vector<PhoneBookFinding> before;
        if (const HRESULT result = examine(before); FAILED(result)) return result;
        for (const PhoneBookFinding& finding : before) {
            if (finding.canBeMended) follow(finding);
        }
        if (const HRESULT result = examine(left); FAILED(result)) return result;
        mended = mendedOf(before, left);
        return S_OK;
    };
    const HRESULT result = writingOperation(followAll);
    if (FAILED(result)) {
        mended.clear();
        left.clear();
    }
    return result;
}

/// What becomes of it is seen by looking again.
void PhoneBookCheck::follow(const PhoneBookFinding& finding) {
    const Remedy& remedy = *std::ranges::find(remedies, finding.kind, &Remedy::kind);
    const CENOTIFICATION notification = {
        .dwSize = sizeof(CENOTIFICATION), .dwParam = 0, .uType = 0, .oid = *(finding.*remedy.record), .oidParent = 0};
    static_cast<void>((manager_.*remedy.follow)(&notification));
}

}  // namespace PhoneBook
