#include <cstdint>
#include <stdexcept>
#include <vector>

#include <benchmark/benchmark.h>

#include "benchmarks/Floor.h"
#include "benchmarks/PhoneBooks.h"
#include "benchmarks/Scratch.h"
#include "benchmarks/Timings.h"
#include "tessera/platform/objectstore/ObjectStore.h"

// The speed-dial cache filled from full tables, one slot set and cleared, and the whole cache flushed, durably. Beside
// it the same rows read in SQL, in turn with it the same rows written: a slot's, its contact's and the contact's
// extension row.

namespace {

using benchmarks::ContactsFloor;
using benchmarks::People;
using benchmarks::Person;
using benchmarks::SqlStatement;
using benchmarks::SqlTransaction;
using benchmarks::Timings;
using PhoneBook::PhoneBookDBMgr;
using PhoneBook::SpeedDialInfo;

constexpr DWORD mobileType = 0x4;
constexpr int slots = 99;

/// Who is to have a slot: nobody with a group, since a link that is written puts the group in front of the categories,
/// which would grow.
int holderOf(int slot, const People& people) {
    const int number = slot * (people.count / (slots + 1));
    return number - number % 3 + 1;
}

/// The holder's mobile number as an entry for the slot.
SpeedDialInfo entryFor(PhoneBookDBMgr& manager, int slot, const People& people) {
    const Person person = benchmarks::personOf(people, holderOf(slot, people));
    SpeedDialInfo info;
    info.dwOID = benchmarks::identify(manager, CString(person.reducedMobile));
    if (info.dwOID == 0) throw std::runtime_error("the holder is not there");
    info.dwSDialID = static_cast<DWORD>(slot);
    info.dwTelType = mobileType;
    info.strTelNo = CString(person.mobile);
    return info;
}

std::vector<SpeedDialInfo> entriesFor(PhoneBookDBMgr& manager, const People& people) {
    std::vector<SpeedDialInfo> entries;
    for (int slot = 1; slot <= slots; ++slot)
        entries.push_back(entryFor(manager, slot, people));
    return entries;
}

void setAll(PhoneBookDBMgr& manager, std::vector<SpeedDialInfo> entries) {
    ObjectStoreBatch batch;
    for (SpeedDialInfo& entry : entries) {
        if (manager.writeSpeedDialInfo(entry.dwSDialID, &entry) != S_OK) throw std::runtime_error("a slot is not set");
    }
    if (!batch.end()) throw std::runtime_error("the slots are not kept");
}

/// The slots' table, and what is written with it.
class SlotsFloor {
public:
    explicit SlotsFloor(const People& people)
        : contacts_(benchmarks::settledCopy(benchmarks::floorOf(people))),
          insert_(contacts_.database(), "INSERT INTO slot(slot,type,number,flags) VALUES(?,4,?,7)"),
          update_(contacts_.database(), "UPDATE slot SET type=4,number=?2,flags=7 WHERE slot=?1"),
          delete_(contacts_.database(), "DELETE FROM slot WHERE slot=?"),
          slots_(contacts_.database(), "SELECT slot,type,number FROM slot ORDER BY slot"),
          extensions_(contacts_.database(), "SELECT contact,name,slots FROM extension WHERE slots<>0") {
        contacts_.database().run(
            "CREATE TABLE slot(id INTEGER PRIMARY KEY, slot INTEGER, type INTEGER, number TEXT, flags INTEGER);"
            "CREATE INDEX by_slot ON slot(slot)");
        for (int slot = 0; slot <= slots; ++slot) {
            holders_.push_back(benchmarks::personOf(people, holderOf(slot, people)));
            ids_.push_back(contacts_.lookUp(holders_.back().reducedMobile).id);
            contacts_.extend(ids_.back(), holders_.back());
        }
    }

    void setAll() {
        for (int slot = 1; slot <= slots; ++slot)
            set(slot);
    }
    void set(int slot) {
        SqlTransaction transaction(contacts_.database());
        insert_.run(slot, holder(slot).reducedMobile);
        link(slot, slot);
        transaction.commit();
    }
    void clear(int slot) {
        SqlTransaction transaction(contacts_.database());
        delete_.run(slot);
        link(slot, 0);
        transaction.commit();
    }
    void rewriteAll() {
        SqlTransaction transaction(contacts_.database());
        for (int slot = 1; slot <= slots; ++slot) {
            update_.run(slot, holder(slot).reducedMobile);
            link(slot, slot);
        }
        transaction.commit();
    }
    /// How many slots have a contact.
    int readAll() {
        std::vector<SpeedDialInfo> entries(slots + 1);
        for (slots_.ask(); slots_.next();)
            entries.at(static_cast<std::size_t>(slots_.number(0))).strTelNo = CString(slots_.text(2));
        int linked = 0;
        for (extensions_.ask(); extensions_.next(); ++linked) {
            SpeedDialInfo& entry = entries.at(static_cast<std::size_t>(extensions_.number(2)));
            entry.dwOID = static_cast<DWORD>(extensions_.number(0));
            entry.strName = CString(extensions_.text(1));
        }
        return linked;
    }

private:
    const Person& holder(int slot) const { return holders_[static_cast<std::size_t>(slot)]; }
    void link(int slot, int word) { contacts_.rewrite(ids_[static_cast<std::size_t>(slot)], holder(slot), word); }

    ContactsFloor contacts_;
    SqlStatement insert_;
    SqlStatement update_;
    SqlStatement delete_;
    SqlStatement slots_;
    SqlStatement extensions_;
    std::vector<Person> holders_;
    std::vector<std::int64_t> ids_;
};

/// The slots of a phone book, all set while this lives.
class FullSlots {
public:
    FullSlots(PhoneBookDBMgr& manager, const People& people) : entries(entriesFor(manager, people)), manager_(manager) {
        setAll(manager, entries);
    }
    ~FullSlots() { static_cast<void>(manager_.deleteAllSpeedDialInfos()); }
    FullSlots(const FullSlots&) = delete;
    FullSlots& operator=(const FullSlots&) = delete;

    const std::vector<SpeedDialInfo> entries;

private:
    PhoneBookDBMgr& manager_;
};

void fillCache(benchmark::State& state) {
    const People people = benchmarks::peopleOf(state);
    PhoneBookDBMgr& manager = benchmarks::warmBook(benchmarks::storeToChange(people));
    const FullSlots full(manager, people);
    Timings timings(state);
    for (auto _ : state) {
        timings.time([&] {
            if (manager.fillSDialInfoCache() != S_OK) state.SkipWithError("the cache is not filled");
        });
    }
    if (manager.getSDialInfoCache(slots).dwOID == 0) state.SkipWithError("the cache is not complete");
}
BENCHMARK(fillCache)->Name("speed_dial_fill/ours")->Apply(benchmarks::severalSizes);

void fillFromRows(benchmark::State& state) {
    SlotsFloor floor(benchmarks::peopleOf(state));
    floor.setAll();
    Timings timings(state);
    for (auto _ : state) {
        int linked = 0;
        timings.time([&] { linked = floor.readAll(); });
        if (linked != slots) state.SkipWithError("not all slots were read");
    }
}
BENCHMARK(fillFromRows)->Name("speed_dial_fill/sql")->Apply(benchmarks::severalSizes);

void flushCache(benchmark::State& state) {
    const People people = benchmarks::peopleOf(state);
    PhoneBookDBMgr& manager = benchmarks::warmBook(benchmarks::storeToChange(people));
    const FullSlots full(manager, people);
    SlotsFloor floor(people);
    floor.setAll();
    Timings timings(state);
    Timings floorTimings(state, benchmarks::inSql);
    for (auto _ : state) {
        for (SpeedDialInfo entry : full.entries) {
            if (manager.writeSDialInfoCache(entry.dwSDialID, &entry) != S_OK) state.SkipWithError("not written");
        }
        timings.time([&] {
            if (manager.flushSDialInfoCache() != S_OK) state.SkipWithError("the cache is not flushed");
        });
        floorTimings.time([&] { floor.rewriteAll(); });
    }
}
BENCHMARK(flushCache)->Name("speed_dial_flush/ours")->Apply(benchmarks::severalSizes);

void setAndClear(benchmark::State& state) {
    const People people = benchmarks::peopleOf(state);
    PhoneBookDBMgr& manager = benchmarks::warmBook(benchmarks::storeToChange(people));
    SpeedDialInfo info = entryFor(manager, 7, people);
    SlotsFloor floor(people);
    Timings timings(state);
    Timings floorTimings(state, benchmarks::inSql);
    for (auto _ : state) {
        timings.time([&] {
            if (manager.insertSpeedDialInfo(7, &info) != S_OK) state.SkipWithError("the slot is not set");
        });
        floorTimings.time([&] { floor.set(7); });
        if (manager.deleteSpeedDialInfo(7, &info) != S_OK) state.SkipWithError("the slot is not cleared");
        floor.clear(7);
    }
}
BENCHMARK(setAndClear)->Name("speed_dial_set/ours")->Apply(benchmarks::severalSizes);

}  // namespace
