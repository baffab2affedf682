#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>

#include "benchmarks/Floor.h"
#include "benchmarks/PhoneBooks.h"
#include "benchmarks/Scratch.h"
#include "benchmarks/Timings.h"
#include "tessera/platform/objectstore/ObjectStore.h"

// Whole records written, each durable when the call returns: a contact, its extension row and its numbers; of a million
// people contacts and numbers only. In turn with it the same rows in one SQL transaction.

namespace {

using benchmarks::ContactsFloor;
using benchmarks::People;
using benchmarks::Person;
using benchmarks::Timings;
using PhoneBook::PhoneBookDBMgr;

/// Somebody who is not among these people, with all that somebody can have.
Person newcomer(const People& people, int number) {
    const int everyThird = (people.count / 3 + 1 + number) * 3;
    return benchmarks::personOf(people, everyThird);
}

/// People who come to a phone book and leave again.
class Newcomers {
public:
    Newcomers(PhoneBookDBMgr& manager, const People& people) : manager_(manager), people_(people) {}

    void insert(PhoneBook::PBRecord record) {
        DWORD oid = 0;
        if (manager_.insertPBRecord(record, &oid) != S_OK) throw std::runtime_error("the contact is not inserted");
        oids_.push_back(oid);
    }
    void removeLast() {
        if (FAILED(manager_.deletePBRecord(oids_.back()))) throw std::runtime_error("the contact is not deleted");
        oids_.pop_back();
    }
    void insertMany(std::int64_t count) {
        ObjectStoreBatch batch;
        for (std::int64_t i = 0; i < count; ++i)
            insert(benchmarks::recordOf(newcomer(people_, static_cast<int>(oids_.size()))));
        if (!batch.end()) throw std::runtime_error("the contacts are not kept");
    }
    void removeAll() {
        ObjectStoreBatch batch;
        while (!oids_.empty())
            removeLast();
        if (!batch.end()) throw std::runtime_error("the contacts are not deleted");
    }

private:
    PhoneBookDBMgr& manager_;
    People people_;
    std::vector<DWORD> oids_;
};

void insert(benchmark::State& state) {
    const People people = benchmarks::peopleOf(state);
    Newcomers newcomers(benchmarks::warmBook(benchmarks::storeToChange(people)), people);
    ContactsFloor& floor = benchmarks::warmFloor(benchmarks::floorToChange(people));
    std::vector<std::pair<std::int64_t, Person>> inserted;
    Timings timings(state);
    Timings floorTimings(state, benchmarks::inSql);
    for (auto _ : state) {
        const Person person = newcomer(people, static_cast<int>(inserted.size()));
        const PhoneBook::PBRecord record = benchmarks::recordOf(person);
        timings.time([&] { newcomers.insert(record); });
        std::int64_t id = 0;
        floorTimings.time([&] { id = floor.insert(person); });
        inserted.emplace_back(id, person);
    }
    newcomers.removeAll();
    floor.removeAll(inserted);
}
BENCHMARK(insert)->Name("insert/ours")->Apply(benchmarks::allSizes);

/// Somebody without a group, in the middle: a group that is written is put in front of the categories, which would
/// grow.
int somebodyOf(const People& people) {
    return people.count / 2 - (people.count / 2) % 3 + 1;
}

/// The same person with two numbers in turn.
Person withNumber(const People& people, int round) {
    Person person = benchmarks::personOf(people, somebodyOf(people));
    if (round % 2 == 0) return person;
    person.mobile = u"010-9000-0000";
    person.reducedMobile = u"01090000000";
    return person;
}

void update(benchmark::State& state) {
    const People people = benchmarks::peopleOf(state);
    PhoneBookDBMgr& manager = benchmarks::warmBook(benchmarks::storeToChange(people));
    const DWORD oid = benchmarks::identify(manager, CString(withNumber(people, 0).reducedMobile));
    if (oid == 0) {
        state.SkipWithError("nobody to be updated");
        return;
    }
    constexpr DWORD bell = 0x100000;  // a field of the extension row, which is then written too
    const auto write = [&](int round) {
        PhoneBook::PBRecord record = benchmarks::recordOf(withNumber(people, round));
        if (people.extended) record.dwCITypeMask |= bell;
        if (manager.updatePBRecord(oid, record) != S_OK) state.SkipWithError("the contact is not updated");
    };
    write(0);
    ContactsFloor& floor = benchmarks::warmFloor(benchmarks::floorToChange(people));
    const std::int64_t id = floor.lookUp(withNumber(people, 0).reducedMobile).id;
    if (people.extended) floor.extend(id, withNumber(people, 0));
    int round = 0;
    Timings timings(state);
    Timings floorTimings(state, benchmarks::inSql);
    for (auto _ : state) {
        ++round;
        timings.time([&] { write(round); });
        const Person person = withNumber(people, round);
        const Person before = withNumber(people, round - 1);
        floorTimings.time([&] { floor.update(id, person, before); });
    }
    write(0);
    floor.update(id, withNumber(people, 0), withNumber(people, round));
}
BENCHMARK(update)->Name("update/ours")->Apply(benchmarks::allSizes);

void remove(benchmark::State& state) {
    const People people = benchmarks::peopleOf(state);
    Newcomers newcomers(benchmarks::warmBook(benchmarks::storeToChange(people)), people);
    newcomers.insertMany(static_cast<std::int64_t>(state.max_iterations));
    ContactsFloor& floor = benchmarks::warmFloor(benchmarks::floorToChange(people));
    std::vector<Person> persons;
    for (int i = 0; i < static_cast<int>(state.max_iterations); ++i)
        persons.push_back(newcomer(people, i));
    std::vector<std::int64_t> ids = floor.import(persons);
    Timings timings(state);
    Timings floorTimings(state, benchmarks::inSql);
    for (auto _ : state) {
        timings.time([&] { newcomers.removeLast(); });
        floorTimings.time([&] { floor.remove(ids.back(), persons.back()); });
        ids.pop_back();
        persons.pop_back();
    }
}
BENCHMARK(remove)->Name("delete/ours")->Apply(benchmarks::allSizes);

void removeAll(benchmark::State& state) {
    const std::filesystem::path full = benchmarks::storeOf(benchmarks::peopleOf(state));
    Timings timings(state);
    for (auto _ : state) {
        const std::filesystem::path store = benchmarks::settledCopy(full);
        {
            benchmarks::OpenBook book(store);
            timings.time([&] {
                if (book.manager().deleteAllPBRecords() != S_OK) state.SkipWithError("not all is deleted");
            });
        }
        benchmarks::removeDatabase(store);
    }
}
BENCHMARK(removeAll)->Name("delete_all/ours")->Apply(benchmarks::severalSizes)->Iterations(1);

void removeAllRows(benchmark::State& state) {
    const std::filesystem::path full = benchmarks::floorOf(benchmarks::peopleOf(state));
    Timings timings(state);
    for (auto _ : state) {
        const std::filesystem::path file = benchmarks::settledCopy(full);
        {
            ContactsFloor floor(file);
            timings.time([&] { floor.removeAll(); });
        }
        benchmarks::removeDatabase(file);
    }
}
BENCHMARK(removeAllRows)->Name("delete_all/sql")->Apply(benchmarks::severalSizes)->Iterations(1);

}  // namespace
