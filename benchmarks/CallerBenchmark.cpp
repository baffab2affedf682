#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>

#include <benchmark/benchmark.h>

#include "benchmarks/Floor.h"
#include "benchmarks/OtherProcess.h"
#include "benchmarks/PhoneBooks.h"
#include "benchmarks/Timings.h"

// Who is calling? Beside it the floors: an indexed SQL look-up that fetches the same fields, and one pass over all
// packed numbers.

namespace {

using benchmarks::ContactsFloor;
using benchmarks::identify;
using benchmarks::People;
using benchmarks::Stride;
using benchmarks::Timings;
using PhoneBook::PhoneBookDBMgr;

constexpr const char16_t* nobodysNumber = u"01099999999";
constexpr const char16_t* shortNumber = u"0102";

void identifyEachIn(PhoneBookDBMgr& manager, int people, benchmark::State& state) {
    Timings timings(state);
    Stride stride(people);
    for (auto _ : state) {
        const CString number(benchmarks::reducedMobileOf(stride.next()));
        DWORD oid = 0;
        timings.time([&] { oid = identify(manager, number); });
        if (oid == 0) state.SkipWithError("nobody was identified");
    }
}

void identifySomebody(benchmark::State& state) {
    const People people = benchmarks::peopleOf(state);
    identifyEachIn(benchmarks::warmBook(benchmarks::storeOf(people)), people.count, state);
}
BENCHMARK(identifySomebody)->Name("identify_hit/ours")->Apply(benchmarks::allSizes);

void identifyWithoutExtension(benchmark::State& state) {
    const People people{.count = static_cast<int>(state.range(0)), .extended = false};
    identifyEachIn(benchmarks::warmBook(benchmarks::storeOf(people)), people.count, state);
}
BENCHMARK(identifyWithoutExtension)->Name("identify_contacts_only/ours")->Arg(10'000)->Arg(1'000'000)->UseManualTime();

void lookEachUpIn(ContactsFloor& floor, int people, benchmark::State& state) {
    Timings timings(state);
    Stride stride(people);
    for (auto _ : state) {
        const std::u16string number = benchmarks::reducedMobileOf(stride.next());
        bool found = false;
        timings.time([&] { found = floor.lookUp(number).id != 0; });
        if (!found) state.SkipWithError("nobody was found");
    }
}

void lookUp(benchmark::State& state) {
    const People people = benchmarks::peopleOf(state);
    lookEachUpIn(benchmarks::warmFloor(benchmarks::floorOf(people)), people.count, state);
}
BENCHMARK(lookUp)->Name("identify_hit/sql")->Apply(benchmarks::allSizes);

/// A number that nobody has exactly: either nobody has it at all, or many have it within a longer one.
void identifyNobody(benchmark::State& state, const char16_t* number) {
    PhoneBookDBMgr& manager = benchmarks::warmBook(benchmarks::storeOf(benchmarks::peopleOf(state)));
    const CString asked(number);
    Timings timings(state);
    for (auto _ : state) {
        DWORD oid = 0;
        timings.time([&] { oid = identify(manager, asked); });
        if (oid != 0) state.SkipWithError("somebody was identified");
    }
}
BENCHMARK_CAPTURE(identifyNobody, miss, nobodysNumber)->Name("identify_miss/ours")->Apply(benchmarks::allSizes);
BENCHMARK_CAPTURE(identifyNobody, part, shortNumber)->Name("identify_short/ours")->Apply(benchmarks::allSizes);

void passNumbers(benchmark::State& state, const char16_t* number) {
    const std::string packed = benchmarks::packedNumbers(benchmarks::peopleOf(state));
    const std::u16string wide = number;
    const std::string asked(wide.begin(), wide.end());
    Timings timings(state);
    for (auto _ : state)
        timings.time([&] { benchmark::DoNotOptimize(benchmarks::timesIn(packed, asked)); });
}
BENCHMARK_CAPTURE(passNumbers, miss, nobodysNumber)->Name("identify_miss/memory")->Apply(benchmarks::allSizes);
BENCHMARK_CAPTURE(passNumbers, part, shortNumber)->Name("identify_short/memory")->Apply(benchmarks::allSizes);

// The first look-up of a program that has just opened the store.

void identifyFirst(benchmark::State& state) {
    const People people = benchmarks::peopleOf(state);
    Timings timings(state);
    Stride stride(people.count);
    for (auto _ : state) {
        benchmarks::forgetContacts();
        benchmarks::OpenBook book(benchmarks::storeOf(people));
        const CString number(benchmarks::reducedMobileOf(stride.next()));
        DWORD oid = 0;
        timings.time([&] { oid = identify(book.manager(), number); });
        if (oid == 0) state.SkipWithError("nobody was identified");
    }
}
BENCHMARK(identifyFirst)->Name("identify_cold/ours")->Apply(benchmarks::allSizes)->Iterations(20);

void lookUpFirst(benchmark::State& state) {
    const People people = benchmarks::peopleOf(state);
    Timings timings(state);
    Stride stride(people.count);
    for (auto _ : state) {
        ContactsFloor floor(benchmarks::floorOf(people));
        const std::u16string number = benchmarks::reducedMobileOf(stride.next());
        bool found = false;
        timings.time([&] { found = floor.lookUp(number).id != 0; });
        if (!found) state.SkipWithError("nobody was found");
    }
}
BENCHMARK(lookUpFirst)->Name("identify_cold/sql")->Apply(benchmarks::allSizes)->Iterations(20);

// The first look-up after another process has changed the number of somebody else.

/// Somebody without extension row, who is not asked for.
constexpr int somebodyElse = 1;

benchmarks::Person withAnotherNumber(const People& people, int round) {
    benchmarks::Person person = benchmarks::personOf(people, somebodyElse);
    if (round % 2 != 0) return person;
    person.mobile = u"010-9000-0000";
    person.reducedMobile = u"01090000000";
    return person;
}

benchmarks::OtherProcess::Work changeContact(const People& people) {
    const auto book = std::make_shared<benchmarks::OpenBook>(benchmarks::storeToChange(people));
    const DWORD oid = identify(book->manager(), CString(benchmarks::personOf(people, somebodyElse).reducedMobile));
    return [book, people, oid](int round) {
        PhoneBook::PBRecord record = benchmarks::recordOf(withAnotherNumber(people, round));
        if (book->manager().updatePBRecord(oid, record) != S_OK) throw std::runtime_error("nobody was changed");
    };
}

benchmarks::OtherProcess::Work changeFloor(const People& people) {
    const auto floor = std::make_shared<ContactsFloor>(benchmarks::floorToChange(people));
    const std::int64_t id = floor->lookUp(benchmarks::personOf(people, somebodyElse).reducedMobile).id;
    return [floor, people, id](int round) {
        floor->update(id, withAnotherNumber(people, round), withAnotherNumber(people, round + 1));
    };
}

/// Times what `look` does with a number each time that the other process has changed something.
template <class Look>
void afterChanges(benchmarks::OtherProcess& other, int people, benchmark::State& state, Look look) {
    Timings timings(state);
    Stride stride(people);
    for (auto _ : state) {
        other.work();
        int person = stride.next();
        if (person == somebodyElse) person = stride.next();
        const std::u16string number = benchmarks::reducedMobileOf(person);
        bool found = false;
        timings.time([&] { found = look(number); });
        if (!found) state.SkipWithError("nobody was found");
    }
}

void identifyAfterChange(benchmark::State& state) {
    const People people = benchmarks::peopleOf(state);
    const std::filesystem::path store = benchmarks::storeToChange(people);
    benchmarks::closeBook();
    benchmarks::OtherProcess other([&] { return changeContact(people); });
    PhoneBookDBMgr& manager = benchmarks::warmBook(store);
    identify(manager, CString(benchmarks::reducedMobileOf(0)));
    afterChanges(other, people.count, state,
                 [&](const std::u16string& number) { return identify(manager, CString(number)) != 0; });
}
BENCHMARK(identifyAfterChange)->Name("identify_after_change/ours")->Apply(benchmarks::severalSizes)->Iterations(200);

void lookUpAfterChange(benchmark::State& state) {
    const People people = benchmarks::peopleOf(state);
    const std::filesystem::path file = benchmarks::floorToChange(people);
    benchmarks::closeFloor();
    benchmarks::OtherProcess other([&] { return changeFloor(people); });
    ContactsFloor floor(file);
    afterChanges(other, people.count, state,
                 [&](const std::u16string& number) { return floor.lookUp(number).id != 0; });
}
BENCHMARK(lookUpAfterChange)->Name("identify_after_change/sql")->Apply(benchmarks::severalSizes)->Iterations(200);

}  // namespace
