#include <stdexcept>

#include "tests/phonebook/Following.h"
#include "tests/recovery/Answers.h"
#include "tests/recovery/ManagerOperations.h"

// Those that work on groups and calls, follow changes by other programs, and import.

namespace recovery {

using PhoneBook::CallEntry;
using PhoneBook::PBGroupInfo;
using PhoneBook::PhoneBookDBMgr;

namespace {

const CString family = TEXT("Family");
const CString work = TEXT("Work");

PBGroupInfo group(DWORD id, const WCHAR* name) {
    PBGroupInfo info;
    info.dwID = id;
    info.strName = name;
    info.strBell = TEXT("tango.mp3");
    return info;
}

/// Makes the manager know which category each group was made of.
void knowCategories(OperationBench& bench) {
    bench.manager().closeDB();
    if (bench.manager().initDB(false) != S_OK) throw std::runtime_error("the phone book was not set up");
    if (bench.manager().openDB(nullptr) != S_OK) throw std::runtime_error("the phone book was not opened");
}

/// Leaves the categories open, and no group of any.
void openCategories(OperationBench& bench) {
    knowCategories(bench);
    const bool opened = bench.manager().getTable(PhoneBook::PBDBTBL_CATEGORIES)->open(nullptr);
    if (!opened || FAILED(bench.manager().getTable(PhoneBook::PBDBTBL_AVAILABLEPBGROUP)->deleteAllRecords()))
        throw std::runtime_error("the groups were not deleted");
}

/// A call is logged even when the phone book cannot be asked for its number.
Answer logUnasked(OperationBench& bench, CallEntry entry) {
    entry.dwFlags = 7;
    const DWORD added = PhoneBook::calls_test::addRow(bench.manager(), PhoneBook::calls_test::rowOf(entry));
    return answerOf(added != 0 ? S_OK : E_FAIL, entry);
}

/// A row that was not read is told by its flags.
Answer readCall(HRESULT result, const CallEntry& entry, DWORD oid) {
    return answerOf(result == S_OK && entry.dwFlags != 7 ? E_FAIL : result, oid, entry);
}

void fillHistory(PhoneBookDBMgr& manager) {
    const ObjectStoreBatch batch;
    for (std::uint64_t i = manager.getTable(PhoneBook::PBDBTBL_CALLHISTORY)->getNumRecords(); i < 100; ++i) {
        if (PhoneBook::calls_test::addRow(manager,
                                          PhoneBook::calls_test::rowOf(PhoneBook::calls_test::call(1'000 + i))) == 0)
            throw std::runtime_error("a call was not added");
    }
}

Answer logCall(OperationBench& bench, const CallEntry& call) {
    CallEntry entry = call;
    const HRESULT result = bench.during([&](auto& manager) { return manager.insertCallEntry(&entry); });
    return answerOf(result, entry);
}

template <HRESULT (PhoneBookDBMgr::*Handler)(const CENOTIFICATION*), DWORD Cast::*Record>
Answer followed(OperationBench& bench) {
    const CENOTIFICATION notification = following::notificationOf(bench.cast().*Record);
    return {bench.during([&](auto& manager) { return (manager.*Handler)(&notification); })};
}

/// Hears of the one line that there is, and of its end.
class LineListener : public PhoneBook::ImportListener {
public:
    void lineTried(int line, HRESULT result, CEOID oid) override {
        tried = line;
        outcome = result;
        made = oid;
    }
    void linesCommitted(int line) override { committed = line; }

    int tried = 0;
    HRESULT outcome = S_OK;
    CEOID made = 0;
    int committed = 0;
};

Answer imported(OperationBench& bench, const char* file, WStringView text, int mode) {
    LineListener listener;
    CString path = bench.file(file, text);
    const HRESULT result = bench.during([&](auto& manager) { return manager.buildDBFromFile(path, mode, &listener); });
    return answerOf(result, listener.tried, listener.outcome, listener.made, listener.committed);
}

using PhoneBook::calls_test::call;

constexpr ManagerOperation groups[] = {
    {"getNextAvailablePBGroupID",
     [](OperationBench& bench) {
         DWORD id = 0;
         const HRESULT result = bench.during([&](auto& manager) { return manager.getNextAvailablePBGroupID(&id); });
         return answerOf(result, id);
     }},
    {"getAvailablePBGroups",
     [](OperationBench& bench) {
         CStringArray names;
         const HRESULT result = bench.during([&](auto& manager) { return manager.getAvailablePBGroups(names); });
         std::ostringstream shown;
         for (const CString& name : names)
             shown << name << ' ';
         return Answer{result, shown.str()};
     }},
    {"initAvailablePBGroup", does<[](PhoneBookDBMgr& manager, const Cast&) { return manager.initAvailablePBGroup(); }>,
     nullptr, openCategories},
    {"getAvailablePBGroup",
     [](OperationBench& bench) {
         PBGroupInfo info;
         const HRESULT result = bench.during([&](auto& manager) { return manager.getAvailablePBGroup(1, &info); });
         return answerOf(result, info);
     }},
    {"queryAvailablePBGroup",
     [](OperationBench& bench) {
         PBGroupInfo info;
         const HRESULT result = bench.during([&](auto& manager) { return manager.queryAvailablePBGroup(work, &info); });
         return answerOf(result, info);
     }},
    {"insertAvailablePBGroup",
     [](OperationBench& bench) -> Answer {
         PBGroupInfo info = group(0, TEXT("Choir"));
         return {bench.during([&](auto& manager) { return manager.insertAvailablePBGroup(&info, true); })};
     }},
    {"deleteAvailablePBGroup by ID",
     does<[](PhoneBookDBMgr& manager, const Cast&) { return manager.deleteAvailablePBGroup(1); }>},
    {"deleteAvailablePBGroup by name",
     does<[](PhoneBookDBMgr& manager, const Cast&) { return manager.deleteAvailablePBGroup(family); }>},
    {"writeAvailablePBGroup of a new ID",
     [](OperationBench& bench) -> Answer {
         PBGroupInfo info = group(12, TEXT("Choir"));
         return {bench.during([&](auto& manager) { return manager.writeAvailablePBGroup(12, &info, 0); })};
     }},
    {"writeAvailablePBGroup keeping what there is",
     [](OperationBench& bench) {
         PBGroupInfo info = group(1, TEXT("Relatives"));
         const HRESULT result = bench.during(
             [&](auto& manager) { return manager.writeAvailablePBGroup(1, &info, PhoneBook::dwKeepIdAndName_); });
         return answerOf(result, info);
     }},
    {"writeAvailablePBGroup of a new name",
     [](OperationBench& bench) -> Answer {
         CString name = TEXT("Choir");
         PBGroupInfo info = group(0, TEXT("Choir"));
         return {bench.during([&](auto& manager) { return manager.writeAvailablePBGroup(name, &info); })};
     }},
    {"writeAvailablePBGroup with another name",
     [](OperationBench& bench) -> Answer {
         CString name = TEXT("Family");
         PBGroupInfo info = group(1, TEXT("Relatives"));
         return {bench.during([&](auto& manager) { return manager.writeAvailablePBGroup(name, &info); })};
     }},
    {"updateAvailablePBGroup",
     [](OperationBench& bench) -> Answer {
         PBGroupInfo info = group(1, TEXT("Family"));
         return {bench.during(
             [&](auto& manager) { return manager.updateAvailablePBGroup(bench.cast().familyRow, &info); })};
     }},
    {"modifyPBGroupInPBRecord",
     does<[](PhoneBookDBMgr& manager, const Cast&) { return manager.modifyPBGroupInPBRecord(family, work); }>},
    {"rejectPBGroup", does<[](PhoneBookDBMgr& manager, const Cast&) { return manager.rejectPBGroup(work, true); }>},
};

constexpr ManagerOperation calls[] = {
    {.name = "insertCallEntry of a contact",
     .run = [](OperationBench& bench) { return logCall(bench, call(400, TEXT("01011112222"))); },
     .lesser = [](OperationBench& bench) { return logUnasked(bench, call(400, TEXT("01011112222"))); }},
    {.name = "insertCallEntry of a name",
     .run = [](OperationBench& bench) { return logCall(bench, call(400, TEXT("01099990000"), TEXT("Park"))); },
     .lesser = [](OperationBench& bench) { return logUnasked(bench, call(400, TEXT("01099990000"), TEXT("Park"))); }},
    {"insertCallEntry into a full history", [](OperationBench& bench) { return logCall(bench, call(9'000)); },
     fillHistory},
    {"queryCallEntry",
     [](OperationBench& bench) {
         CallEntry entry;
         const HRESULT result =
             bench.during([&](auto& manager) { return manager.queryCallEntry(bench.cast().call, &entry); });
         return readCall(result, entry, bench.cast().call);
     }},
    {"getMRUCallEntry",
     [](OperationBench& bench) {
         CallEntry entry;
         const HRESULT result = bench.during([&](auto& manager) { return manager.getMRUCallEntry(&entry); });
         return readCall(result, entry, 0);
     }},
    {"getLRUCallEntry",
     [](OperationBench& bench) {
         CallEntry entry;
         DWORD oid = 0;
         const HRESULT result = bench.during([&](auto& manager) { return manager.getLRUCallEntry(&oid, &entry); });
         return readCall(result, entry, oid);
     }},
    {"deleteCallEntry",
     does<[](PhoneBookDBMgr& manager, const Cast& cast) { return manager.deleteCallEntry(cast.call); }>},
    {"deleteAllCallEntries", does<[](PhoneBookDBMgr& manager, const Cast&) { return manager.deleteAllCallEntries(); }>},
};

constexpr ManagerOperation handlers[] = {
    {"onCEOIDCreatedContacts", followed<&PhoneBookDBMgr::onCEOIDCreatedContacts, &Cast::han>},
    {"onCEOIDChangedContacts", followed<&PhoneBookDBMgr::onCEOIDChangedContacts, &Cast::jung>},
    {"onCEOIDRecordDeletedContacts", followed<&PhoneBookDBMgr::onCEOIDRecordDeletedContacts, &Cast::yoon>},
    {"onCEOIDCreatedCategories", followed<&PhoneBookDBMgr::onCEOIDCreatedCategories, &Cast::sports>},
    {"onCEOIDRecordDeletedCategories", followed<&PhoneBookDBMgr::onCEOIDRecordDeletedCategories, &Cast::work>, nullptr,
     knowCategories},
    {"onContactsCategoriesChanged", followed<&PhoneBookDBMgr::onContactsCategoriesChanged, &Cast::jung>},
};

constexpr ManagerOperation imports[] = {
    {"buildDBFromFile of entries",
     [](OperationBench& bench) { return imported(bench, "one.csv", TEXT("header\nMoon,Family,,010-4545-6767\n"), 0); }},
    {"buildDBFromFile of rows",
     [](OperationBench& bench) {
         return imported(bench, "QZ_SpeedDialNo.csv", TEXT("header\n60,4,01045456767,7\n"), 1);
     }},
};

}  // namespace

std::span<const ManagerOperation> groupOperations() {
    return groups;
}
std::span<const ManagerOperation> callOperations() {
    return calls;
}
std::span<const ManagerOperation> followingOperations() {
    return handlers;
}
std::span<const ManagerOperation> importOperations() {
    return imports;
}

}  // namespace recovery
