#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "benchmarks/Floor.h"
#include "benchmarks/PhoneBooks.h"
#include "tessera/platform/objectstore/ObjectStore.h"

// The speed-dial cache filled from a full table, and a slot set and cleared, durably. Beside the latter its floor:
// the same six row writes in two SQL transactions.

namespace {

using benchmarks::PhoneBookOf;

constexpr DWORD mobileType = 0x4;
constexpr int slots = 99;

std::vector<DWORD> contactsOf(PhoneBook::PhoneBookDBMgr& manager) {
    const std::unique_ptr<Database::Iterator> each(
        manager.getIterator(UINT{PhoneBook::PBDBATTR_NAME}, nullptr, nullptr));
    std::vector<DWORD> oids;
    while (each->next() == S_OK)
        oids.push_back(each->getCur());
    return oids;
}

/// The mobile number of a contact as an entry for a slot.
PhoneBook::SpeedDialInfo entryFor(PhoneBook::PhoneBookDBMgr& manager, DWORD slot, DWORD contact) {
    PhoneBook::PBRecord record;
    record.dwCITypeMask = mobileType;
    if (manager.queryCallerInfo(contact, &record) != S_OK) throw std::runtime_error("the contact is not read");
    PhoneBook::SpeedDialInfo info;
    info.dwSDialID = slot;
    info.dwOID = contact;
    info.dwTelType = mobileType;
    info.strTelNo = record.strMobileTelephoneNumber;
    return info;
}

/// Gives a contact of every 656 a slot.
void fillEverySlot(PhoneBook::PhoneBookDBMgr& manager, const std::vector<DWORD>& contacts) {
    ObjectStoreBatch batch;
    for (DWORD slot = 1; slot <= slots; ++slot) {
        PhoneBook::SpeedDialInfo info = entryFor(manager, slot, contacts.at(slot * contacts.size() / (slots + 1)));
        if (manager.insertSpeedDialInfo(slot, &info) != S_OK) throw std::runtime_error("the slot is not set");
    }
    if (!batch.end()) throw std::runtime_error("the slots are not kept");
}

/// Gives every contact that has none an extension row, without slots.
void extendEverybody(PhoneBook::PhoneBookDBMgr& manager, const std::vector<DWORD>& contacts) {
    Database::Table* extension = manager.getTable(PhoneBook::PBDBTBL_PHONEBOOKEXT);
    std::set<DWORD> extended;
    const std::unique_ptr<Database::Iterator> rows(extension->getIterator(nullptr, nullptr));
    while (rows->next() == S_OK)
        extended.insert(rows->getProp(0).getUI4());
    ObjectStoreBatch batch;
    for (const DWORD contact : contacts) {
        if (extended.contains(contact)) continue;
        CCeDBProp props[11];
        for (int i = 0; i < extension->getNumAttrs(); ++i)
            props[i] = CCeDBProp(extension->getAttrDef(i)->getType(), extension->getAttrIdent(i));
        props[0] = CCeDBProp::ofUI4(extension->getAttrIdent(0), contact);
        props[1] = CCeDBProp::ofText(extension->getAttrIdent(1), u"somebody");
        DWORD oid = 0;
        if (extension->insertRecord(props, oid) != S_OK) throw std::runtime_error("the row is not inserted");
    }
    if (!batch.end()) throw std::runtime_error("the rows are not kept");
}

void fillCache(benchmark::State& state, bool everybodyIsExtended) {
    PhoneBookOf book(static_cast<int>(state.range(0)));
    const std::vector<DWORD> contacts = contactsOf(book.manager());
    fillEverySlot(book.manager(), contacts);
    if (everybodyIsExtended) extendEverybody(book.manager(), contacts);
    for (auto _ : state) {
        if (book.manager().fillSDialInfoCache() != S_OK) state.SkipWithError("the cache is not filled");
    }
    if (book.manager().getSDialInfoCache(slots).dwOID == 0) state.SkipWithError("the cache is not complete");
    state.counters["rows"] = book.manager().getTable(PhoneBook::PBDBTBL_PHONEBOOKEXT)->getNumRecords();
    // The store may be asked for again, by the next repetition: as it was.
    if (book.manager().deleteAllSpeedDialInfos() != S_OK) state.SkipWithError("the slots are not emptied");
}
// On stores of their own sizes: the rows stay in them. In the first every third contact is extended.
BENCHMARK_CAPTURE(fillCache, some, false)->Name("speed_dial/fill")->Arg(65'001)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(fillCache, all, true)
    ->Name("speed_dial/fill_all_extended")
    ->Arg(65'002)
    ->Unit(benchmark::kMillisecond);

/// Somebody without a group: a link that is written puts the group in front of the categories, which would grow.
int somebodyOf(int people) {
    return people / 2 - (people / 2) % 3 + 1;
}

void setAndClear(benchmark::State& state) {
    const int people = static_cast<int>(state.range(0));
    PhoneBookOf book(people);
    const std::unique_ptr<Database::Iterator> found(
        book.manager().searchPBRecordOfTelNo(nullptr, CString(benchmarks::reducedMobileOf(somebodyOf(people)))));
    PhoneBook::SpeedDialInfo info = entryFor(book.manager(), 7, found->getAt(0));
    for (auto _ : state) {
        if (book.manager().insertSpeedDialInfo(7, &info) != S_OK) state.SkipWithError("the slot is not set");
        if (book.manager().deleteSpeedDialInfo(7, &info) != S_OK) state.SkipWithError("the slot is not cleared");
    }
}
BENCHMARK(setAndClear)
    ->Name("speed_dial/set_and_clear")
    ->Arg(1'003)
    ->Arg(10'003)
    ->UseRealTime()
    ->Unit(benchmark::kMicrosecond);

void setAndClearFloor(benchmark::State& state) {
    static int files = 0;
    const int people = static_cast<int>(state.range(0));
    const auto file = benchmarks::scratchFolder() / ("slots" + std::to_string(++files) + ".sqlite");
    benchmarks::SpeedDialFloor floor(file.string(), people);
    for (auto _ : state) {
        floor.set(7, somebodyOf(people));
        floor.clear(7, somebodyOf(people));
    }
}
BENCHMARK(setAndClearFloor)
    ->Name("speed_dial/set_and_clear_floor")
    ->Arg(1'003)
    ->Arg(10'003)
    ->UseRealTime()
    ->Unit(benchmark::kMicrosecond);

}  // namespace
