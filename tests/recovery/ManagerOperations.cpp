#include "tests/recovery/ManagerOperations.h"

#include <stdexcept>

#include "tests/phonebook/Following.h"
#include "tests/recovery/Answers.h"
#include "tests/support/Builders.h"

// Those that work on the databases and the contacts.

namespace recovery {

using PhoneBook::PBRecord;
using PhoneBook::PhoneBookDBMgr;
using testing_support::contact;

namespace {

/// All that Kim has: name, categories, three numbers, group, tone and slots.
constexpr DWORD kimsFields = 0x0031001F;

constexpr UINT extensionTable = PhoneBook::PBDBTBL_PHONEBOOKEXT;
constexpr UINT nameAttribute = PhoneBook::PBDBATTR_NAME;

void dropTables(PhoneBookDBMgr& manager) {
    if (FAILED(manager.destroyDB())) throw std::runtime_error("the databases were not dropped");
}

void closeTables(OperationBench& bench) {
    bench.manager().closeDB();
}

void fillCache(OperationBench& bench) {
    bench.manager().fillSDialInfoCache();
}

PBRecord newcomer() {
    return contact()
        .name(TEXT("Moon"))
        .group(TEXT("Family"))
        .mobile(TEXT("010-4545-6767"))
        .bell(TEXT("march.mp3"))
        .record();
}

constexpr ManagerOperation lifecycle[] = {
    // Not the manager's, but the first of all.
    {"ObjectStore::mount",
     [](OperationBench& bench) {
         const std::string path = bench.path();
         const ObjectStore::Options options;
         return saying(bench.during([&](auto&) { return ObjectStore::mount(path, options); }));
     }},
    {"initDB", does<[](PhoneBookDBMgr& manager, const Cast&) { return manager.initDB(false); }>, nullptr, closeTables},
    {"initDB of a store without databases",
     does<[](PhoneBookDBMgr& manager, const Cast&) { return manager.initDB(false); }>, dropTables},
    {"createDB", does<[](PhoneBookDBMgr& manager, const Cast&) { return manager.createDB(); }>, dropTables},
    {"openDB", does<[](PhoneBookDBMgr& manager, const Cast&) { return manager.openDB(nullptr); }>, nullptr,
     closeTables},
    {.name = "closeDB",
     .run = does<[](PhoneBookDBMgr& manager, const Cast&) { return manager.closeDB(); }>,
     .usesStore = false},
    {"destroyDB", does<[](PhoneBookDBMgr& manager, const Cast&) { return manager.destroyDB(); }>},
    {"Create",
     [](OperationBench& bench) { return saying(bench.during([&](auto& manager) { return manager.Create(); })); }},
    {"getIterator over a table",
     [](OperationBench& bench) {
         return walked(
             bench, [](auto& manager) { return manager.getIterator(extensionTable, 0, nullptr, nullptr); }, 1);
     }},
    {"getIterator by an attribute",
     [](OperationBench& bench) {
         return walked(
             bench, [](auto& manager) { return manager.getIterator(nameAttribute, nullptr, nullptr); }, 0);
     }},
};

constexpr ManagerOperation records[] = {
    // The categories of a contact that cannot be had count as none.
    {.name = "getTableAttrsFromPBRecord",
     .run =
         [](OperationBench& bench) {
             CObArray props;
             PBRecord record = contact().name(TEXT("Choi")).group(TEXT("Work")).categories(TEXT("")).record();
             const HRESULT result = bench.during([&](auto& manager) {
                 return manager.getTableAttrsFromPBRecord(PhoneBook::PBDBTBL_POLCONTACTS, bench.cast().choi, record,
                                                          props);
             });
             const Answer answer = answerOf(result, props.GetSize(), record.strCategories);
             bench.manager().clearObArray(props);
             return answer;
         },
     .promise = ManagerOperation::Promise::gaps},
    {"insertPBRecord",
     [](OperationBench& bench) {
         PBRecord record = newcomer();
         DWORD oid = 0;
         const HRESULT result = bench.during([&](auto& manager) { return manager.insertPBRecord(record, &oid); });
         return answerOf(result, oid);
     }},
    {"updatePBRecord",
     [](OperationBench& bench) -> Answer {
         PBRecord record = contact()
                               .name(TEXT("Choi"))
                               .group(TEXT("Family"))
                               .home(TEXT("02-898-9898"))
                               .bell(TEXT("polka.mp3"))
                               .record();
         return {bench.during([&](auto& manager) { return manager.updatePBRecord(bench.cast().choi, record); })};
     }},
    {"deletePBRecord", does<[](PhoneBookDBMgr& manager, const Cast& cast) { return manager.deletePBRecord(cast.kim); }>,
     nullptr, fillCache},
    {"deleteRecord",
     [](OperationBench& bench) -> Answer {
         DWORD row = bench.cast().kimsRow;
         return {
             bench.during([&](auto& manager) { return manager.deleteRecord(PhoneBook::PBDBTBL_PHONEBOOKEXT, row); })};
     }},
    {"deleteAllPBRecords", does<[](PhoneBookDBMgr& manager, const Cast&) { return manager.deleteAllPBRecords(); }>,
     nullptr, fillCache},
    {.name = "getNumRecords",
     .run =
         [](OperationBench& bench) {
             const DWORD count = bench.during([&](auto& manager) { return manager.getNumRecords(); });
             return answerOf(count != 0 ? S_OK : E_FAIL, count);  // 0 is all that it can say
         }},
    {"insertRecord", does<[](PhoneBookDBMgr& manager, const Cast&) { return manager.insertRecord(); }>},
};

constexpr ManagerOperation searches[] = {
    {"searchPBRecord by name",
     [](OperationBench& bench) {
         const CString text = TEXT("k");
         return walked(
             bench, [&](auto& manager) { return manager.searchPBRecord(PhoneBook::PBDBATTR_NAME, text); }, 2);
     }},
    {"searchPBRecord by a restriction",
     [](OperationBench& bench) {
         const CString restriction = TEXT("[FileAs] > \"J\"");
         return walked(
             bench, [&](auto& manager) { return manager.searchPBRecord(restriction); }, 0);
     }},
    {"searchPBRecord within a result",
     [](OperationBench& bench) {
         const CString restriction = TEXT("[FileAs] > \"J\"");
         const std::unique_ptr<Database::Iterator> outer(
             bench.during([&](auto& manager) { return manager.searchPBRecord(restriction); }));
         if (outer == nullptr) return Answer{E_FAIL};  // without one all contacts would be searched
         CCeDBProp from = CCeDBProp::ofText(0, TEXT("K"));
         CCeDBProp to = CCeDBProp::ofText(0, TEXT("M"));
         auto* const within = static_cast<Database::POlDBIterator*>(outer.get());
         return walked(
             bench, [&](auto& manager) { return manager.searchPBRecord(within, 0, &from, &to); }, 0);
     }},
    {"searchPBRecordOfTelNo",
     [](OperationBench& bench) {
         const CString number = TEXT("010");
         return walked(
             bench, [&](auto& manager) { return manager.searchPBRecordOfTelNo(nullptr, number); }, 0);
     }},
    {"searchPBRecordOfPBGroup",
     [](OperationBench& bench) {
         const CString group = TEXT("Chess");
         return walked(
             bench, [&](auto& manager) { return manager.searchPBRecordOfPBGroup(group); }, 0);
     }},
    {"searchPBRecordOfPBGroup without a group",
     [](OperationBench& bench) {
         const CString none;
         return walked(
             bench, [&](auto& manager) { return manager.searchPBRecordOfPBGroup(none); }, 0);
     }},
    {"qSearchPBRecord",
     [](OperationBench& bench) {
         const CString prefix = TEXT("K");
         return walked(
             bench, [&](auto& manager) { return manager.qSearchPBRecord(PhoneBook::PBDBATTR_NAME, prefix); }, 0);
     }},
    {"qSearchPBRecord of all",
     [](OperationBench& bench) {
         const CString all;
         return walked(
             bench, [&](auto& manager) { return manager.qSearchPBRecord(PhoneBook::PBDBATTR_NAME, all); }, 0);
     }},
};

constexpr ManagerOperation callers[] = {
    {.name = "queryCallerInfo by number",
     .run =
         [](OperationBench& bench) {
             PBRecord record;
             record.dwCITypeMask = kimsFields;
             DWORD oid = 0;
             const CString number = TEXT("01011112222");
             const HRESULT result =
                 bench.during([&](auto& manager) { return manager.queryCallerInfo(number, &record, &oid); });
             return answerOf(result, record, oid);
         },
     .promise = ManagerOperation::Promise::inPart},
    {.name = "queryCallerInfo by contact",
     .run =
         [](OperationBench& bench) {
             PBRecord record;
             record.dwCITypeMask = kimsFields;
             const HRESULT result =
                 bench.during([&](auto& manager) { return manager.queryCallerInfo(bench.cast().kim, &record); });
             return answerOf(result, record);
         },
     .promise = ManagerOperation::Promise::inPart},
    {"queryCID",
     [](OperationBench& bench) {
         CString number;
         const HRESULT result = bench.during([&](auto& manager) { return manager.queryCID(2, &number); });
         return answerOf(result, number);
     }},
};

}  // namespace

std::span<const ManagerOperation> lifecycleOperations() {
    return lifecycle;
}
std::span<const ManagerOperation> recordOperations() {
    return records;
}
std::span<const ManagerOperation> searchOperations() {
    return searches;
}
std::span<const ManagerOperation> callerOperations() {
    return callers;
}

}  // namespace recovery
