#include <array>

#include "tests/phonebook/SpeedDialBuilders.h"
#include "tests/recovery/Answers.h"
#include "tests/recovery/ManagerOperations.h"

// Those that work on the speed dial.

namespace recovery {

using PhoneBook::PhoneBookDBMgr;
using PhoneBook::SpeedDialInfo;
using speed_dial::dial;

namespace {

/// Two entries to write, one of them new, and one to empty.
void markCache(OperationBench& bench) {
    PhoneBookDBMgr& manager = bench.manager();
    manager.fillSDialInfoCache();
    SpeedDialInfo moved = dial(2).of(bench.cast().park).mobile(TEXT("010-9999-0000"));
    SpeedDialInfo fresh = dial(20).of(bench.cast().park).mobile(TEXT("010-9999-0000"));
    static_cast<void>(manager.writeSDialInfoCache(2, &moved));
    static_cast<void>(manager.writeSDialInfoCache(20, &fresh));
    static_cast<void>(manager.deleteSDialInfoCache(5, nullptr));
}

void fillCache(OperationBench& bench) {
    bench.manager().fillSDialInfoCache();
}

Answer cacheOf(HRESULT result, const SpeedDialInfo* cache) {
    std::ostringstream shown;
    for (DWORD slot = 0; slot < PhoneBookDBMgr::nSDialCacheSize_; ++slot) {
        if (!(cache[slot] == PhoneBookDBMgr::nullSDialInfo)) shown << cache[slot] << '\n';
    }
    return {result, shown.str()};
}

constexpr ManagerOperation speedDial[] = {
    {.name = "querySpeedDialInfo by slot",
     .run =
         [](OperationBench& bench) {
             SpeedDialInfo info;
             const HRESULT result =
                 bench.during([&](auto& manager) { return manager.querySpeedDialInfo(2, &info, true); });
             return answerOf(result, info);
         },
     .promise = ManagerOperation::Promise::inPart},
    {"querySpeedDialInfo by number",
     [](OperationBench& bench) {
         SpeedDialInfo info;
         DWORD row = 0;
         const CString number = TEXT("010-7777-8888");
         const HRESULT result =
             bench.during([&](auto& manager) { return manager.querySpeedDialInfo(number, row, &info); });
         return answerOf(result, row, info);
     }},
    {"insertSpeedDialInfo",
     [](OperationBench& bench) -> Answer {
         SpeedDialInfo info = dial(30).of(bench.cast().kim).business(TEXT("031-555-6666"));
         return {bench.during([&](auto& manager) { return manager.insertSpeedDialInfo(30, &info); })};
     },
     nullptr, fillCache},
    {"updateSpeedDialInfo",
     [](OperationBench& bench) -> Answer {
         SpeedDialInfo info = dial(6).of(bench.cast().kim).business(TEXT("031-555-6666"));
         return {bench.during([&](auto& manager) { return manager.updateSpeedDialInfo(bench.cast().slotRow, &info); })};
     },
     nullptr, fillCache},
    {"writeSpeedDialInfo into a free slot",
     [](OperationBench& bench) -> Answer {
         SpeedDialInfo info = dial(31).of(bench.cast().park).mobile(TEXT("010-9999-0000"));
         return {bench.during([&](auto& manager) { return manager.writeSpeedDialInfo(31, &info); })};
     },
     nullptr, fillCache},
    {"writeSpeedDialInfo over a slot",
     [](OperationBench& bench) -> Answer {
         SpeedDialInfo info = dial(5).of(bench.cast().kim).business(TEXT("031-555-6666"));
         return {bench.during([&](auto& manager) { return manager.writeSpeedDialInfo(5, &info); })};
     },
     nullptr, fillCache},
    {"deleteSpeedDialInfo",
     does<[](PhoneBookDBMgr& manager, const Cast&) { return manager.deleteSpeedDialInfo(2, nullptr); }>, nullptr,
     fillCache},
    {"deleteSpeedDialInfo of a contact",
     [](OperationBench& bench) -> Answer {
         SpeedDialInfo info = dial(3).of(bench.cast().kim).home(TEXT("02-333-4444"));
         return {bench.during([&](auto& manager) { return manager.deleteSpeedDialInfo(3, &info); })};
     },
     nullptr, fillCache},
    {"moveSpeedDialInfo",
     [](OperationBench& bench) {
         SpeedDialInfo info = dial(0).of(bench.cast().lee);
         const HRESULT result = bench.during([&](auto& manager) { return manager.moveSpeedDialInfo(5, 40, &info); });
         return answerOf(result, info);
     },
     nullptr, fillCache},
    {"moveSpeedDialInfo by number",
     does<[](PhoneBookDBMgr& manager, const Cast&) { return manager.moveSpeedDialInfo(5, 40, nullptr); }>, nullptr,
     fillCache},
    {"deleteAllSpeedDialInfos",
     does<[](PhoneBookDBMgr& manager, const Cast&) { return manager.deleteAllSpeedDialInfos(); }>, nullptr, fillCache},
    {"findFirstEmptySDialID",
     [](OperationBench& bench) {
         DWORD free = 0;
         const HRESULT result = bench.during([&](auto& manager) { return manager.findFirstEmptySDialID(7, &free); });
         return answerOf(result, free);
     }},
    {"findFirstEmptySDialID from a taken slot",
     [](OperationBench& bench) {
         DWORD free = 0;
         const HRESULT result = bench.during([&](auto& manager) { return manager.findFirstEmptySDialID(5, &free); });
         return answerOf(result, free);
     }},
    {"setSDialIDInPBExt by number",
     [](OperationBench& bench) -> Answer {
         const CString number = TEXT("01077778888");
         return {bench.during(
             [&](auto& manager) { return manager.setSDialIDInPBExt(33, number, speed_dial::mobileType); })};
     }},
    {"setSDialIDInPBExt by contact",
     [](OperationBench& bench) -> Answer {
         DWORD contactOid = bench.cast().choi;
         return {bench.during(
             [&](auto& manager) { return manager.setSDialIDInPBExt(34, contactOid, speed_dial::homeType); })};
     }},
};

constexpr ManagerOperation speedDialCache[] = {
    // These pass over a row that they cannot read, unless it is the last one of the extension table.
    {.name = "fillSDialInfoCache",
     .run =
         [](OperationBench& bench) {
             const HRESULT result = bench.during([&](auto& manager) { return manager.fillSDialInfoCache(); });
             return cacheOf(result, &bench.manager().getSDialInfoCache(0));
         },
     .promise = ManagerOperation::Promise::gaps,
     .fillsCache = true},
    {.name = "fillSDialInfoCache of an array",
     .run =
         [](OperationBench& bench) {
             std::array<SpeedDialInfo, PhoneBookDBMgr::nSDialCacheSize_> cache;
             const HRESULT result =
                 bench.during([&](auto& manager) { return manager.fillSDialInfoCache(cache.data()); });
             return cacheOf(result, cache.data());
         },
     .promise = ManagerOperation::Promise::gaps},
    {.name = "fillSDialInfoCache of names",
     .run =
         [](OperationBench& bench) {
             CMap<DWORD, DWORD&, CString, CString&> names;
             const HRESULT result = bench.during([&](auto& manager) { return manager.fillSDialInfoCache(names); });
             std::ostringstream shown;
             for (DWORD slot = 0; slot < PhoneBookDBMgr::nSDialCacheSize_; ++slot) {
                 if (CString name; names.Lookup(slot, name)) shown << slot << ' ' << name << ' ';
             }
             return Answer{result, shown.str()};
         },
     .promise = ManagerOperation::Promise::gaps},
    {.name = "fillSDialInfoCacheInPBExt",
     .run =
         [](OperationBench& bench) {
             std::array<SpeedDialInfo, PhoneBookDBMgr::nSDialCacheSize_> cache;
             cache[2] = dial(2).mobile(TEXT("01011112222"));
             const HRESULT result =
                 bench.during([&](auto& manager) { return manager.fillSDialInfoCacheInPBExt(cache.data()); });
             return cacheOf(result, cache.data());
         },
     .promise = ManagerOperation::Promise::gaps},
    {.name = "writeSDialInfoCache",
     .run = [](OperationBench& bench) -> Answer {
         SpeedDialInfo info =
             dial(8).of(bench.cast().park).name(TEXT("Park, of whom no more is known")).mobile(TEXT("01099990000"));
         return {bench.during([&](auto& manager) { return manager.writeSDialInfoCache(8, &info); })};
     },
     .usesStore = false},
    {.name = "moveSDialInfoCache",
     .run = does<[](PhoneBookDBMgr& manager, const Cast&) { return manager.moveSDialInfoCache(2, 50); }>,
     .arrange = fillCache,
     .usesStore = false},
    {.name = "querySDialInfoCache",
     .run =
         [](OperationBench& bench) {
             SpeedDialInfo info;
             const CString number = TEXT("01077778888");
             const HRESULT result =
                 bench.during([&](auto& manager) { return manager.querySDialInfoCache(number, &info); });
             return answerOf(result, info);
         },
     .arrange = fillCache,
     .usesStore = false},
    {"flushSDialInfoCache", does<[](PhoneBookDBMgr& manager, const Cast&) { return manager.flushSDialInfoCache(); }>,
     nullptr, markCache},
};

}  // namespace

std::span<const ManagerOperation> speedDialOperations() {
    return speedDial;
}
std::span<const ManagerOperation> speedDialCacheOperations() {
    return speedDialCache;
}

}  // namespace recovery
