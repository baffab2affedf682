#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "benchmarks/Floor.h"
#include "benchmarks/PhoneBooks.h"
#include "benchmarks/Timings.h"

// Names by a part of them, by initial consonants and by their beginning, and the members of a group. Beside them the
// same asked of SQL, and one pass over packed memory.

namespace {

using benchmarks::ContactsFloor;
using benchmarks::People;
using benchmarks::Timings;
using Database::Iterator;
using PhoneBook::PhoneBookDBMgr;

using Search = std::unique_ptr<Iterator> (*)(PhoneBookDBMgr&);

std::unique_ptr<Iterator> byPart(PhoneBookDBMgr& manager) {
    return std::unique_ptr<Iterator>(manager.searchPBRecord(PhoneBook::PBDBATTR_NAME, u"boris g"));
}
std::unique_ptr<Iterator> byCommonPart(PhoneBookDBMgr& manager) {
    return std::unique_ptr<Iterator>(manager.searchPBRecord(PhoneBook::PBDBATTR_NAME, u"민"));
}
std::unique_ptr<Iterator> byInitials(PhoneBookDBMgr& manager) {
    return std::unique_ptr<Iterator>(manager.searchPBRecord(PhoneBook::PBDBATTR_NAME, u"ㄱㅁㅅ"));
}
std::unique_ptr<Iterator> byPrefix(PhoneBookDBMgr& manager) {
    return std::unique_ptr<Iterator>(manager.qSearchPBRecord(PhoneBook::PBDBATTR_NAME, u"Boris G"));
}
std::unique_ptr<Iterator> byGroup(PhoneBookDBMgr& manager) {
    return std::unique_ptr<Iterator>(manager.searchPBRecordOfPBGroup(benchmarks::theGroup));
}

void found(benchmark::State& state, int matches) {
    if (matches == 0) state.SkipWithError("nobody was found");
    state.counters["found"] = matches;
}

int countOf(const std::unique_ptr<Iterator>& matches) {
    return matches == nullptr ? 0 : matches->getNumItems();
}

void search(benchmark::State& state, Search ask) {
    PhoneBookDBMgr& manager = benchmarks::warmBook(benchmarks::storeOf(benchmarks::peopleOf(state)));
    Timings timings(state);
    int matches = 0;
    for (auto _ : state)
        timings.time([&] { matches = countOf(ask(manager)); });
    found(state, matches);
}
BENCHMARK_CAPTURE(search, part, byPart)->Name("name_part/ours")->Apply(benchmarks::allSizes);
BENCHMARK_CAPTURE(search, common, byCommonPart)->Name("name_common_part/ours")->Apply(benchmarks::allSizes);
BENCHMARK_CAPTURE(search, initials, byInitials)->Name("name_initials/ours")->Apply(benchmarks::allSizes);
BENCHMARK_CAPTURE(search, prefix, byPrefix)->Name("name_prefix/ours")->Apply(benchmarks::allSizes);
BENCHMARK_CAPTURE(search, group, byGroup)->Name("group/ours")->Apply(benchmarks::severalSizes);

void pass(benchmark::State& state, std::u16string (*pack)(const People&), const char16_t* key) {
    const std::u16string packed = pack(benchmarks::peopleOf(state));
    const std::u16string sought = key;
    Timings timings(state);
    int matches = 0;
    for (auto _ : state)
        timings.time([&] { matches = benchmarks::timesIn(packed, sought); });
    found(state, matches);
}
BENCHMARK_CAPTURE(pass, part, benchmarks::packedNames, u"boris g")
    ->Name("name_part/memory")
    ->Apply(benchmarks::allSizes);
BENCHMARK_CAPTURE(pass, common, benchmarks::packedNames, u"민")
    ->Name("name_common_part/memory")
    ->Apply(benchmarks::allSizes);
BENCHMARK_CAPTURE(pass, initials, benchmarks::packedInitials, u"ㄱㅁㅅ")
    ->Name("name_initials/memory")
    ->Apply(benchmarks::allSizes);

void passGroups(benchmark::State& state) {
    const People people = benchmarks::peopleOf(state);
    std::vector<std::uint32_t> groups;
    for (int i = 0; i < people.count; ++i)
        groups.push_back(benchmarks::personOf(people, i).group.empty() ? 0 : 1);
    Timings timings(state);
    std::ptrdiff_t matches = 0;
    for (auto _ : state)
        timings.time([&] { benchmark::DoNotOptimize(matches = std::ranges::count(groups, std::uint32_t{1})); });
    found(state, static_cast<int>(matches));
}
BENCHMARK(passGroups)->Name("group/memory")->Apply(benchmarks::severalSizes);

int likePart(ContactsFloor& floor) {
    return static_cast<int>(floor.namesLike(u"%boris g%").size());
}
int likeCommonPart(ContactsFloor& floor) {
    return static_cast<int>(floor.namesLike(u"%민%").size());
}
int ofGroup(ContactsFloor& floor) {
    return static_cast<int>(floor.withCategories(benchmarks::theGroup).size());
}
int betweenBounds(ContactsFloor& floor) {
    return static_cast<int>(floor.namesBetween(u"Boris G", u"Boris H").size());
}

void ask(benchmark::State& state, int (*question)(ContactsFloor&)) {
    ContactsFloor& floor = benchmarks::warmFloor(benchmarks::floorOf(benchmarks::peopleOf(state)));
    Timings timings(state);
    int matches = 0;
    for (auto _ : state)
        timings.time([&] { matches = question(floor); });
    found(state, matches);
}
BENCHMARK_CAPTURE(ask, part, likePart)->Name("name_part/sql")->Apply(benchmarks::allSizes);
BENCHMARK_CAPTURE(ask, common, likeCommonPart)->Name("name_common_part/sql")->Apply(benchmarks::allSizes);
BENCHMARK_CAPTURE(ask, group, ofGroup)->Name("group/sql")->Apply(benchmarks::severalSizes);
BENCHMARK_CAPTURE(ask, prefix, betweenBounds)->Name("name_prefix/sql")->Apply(benchmarks::allSizes);

// The first search of a program that has just opened the store: what is kept in memory of the contacts is read.

void searchFirst(benchmark::State& state, Search ask) {
    const std::filesystem::path store = benchmarks::storeOf(benchmarks::peopleOf(state));
    Timings timings(state);
    int matches = 0;
    for (auto _ : state) {
        benchmarks::forgetContacts();
        benchmarks::OpenBook book(store);
        timings.time([&] { matches = countOf(ask(book.manager())); });
    }
    found(state, matches);
}
BENCHMARK_CAPTURE(searchFirst, part, byPart)->Name("name_part_cold/ours")->Apply(benchmarks::allSizes)->Iterations(5);
BENCHMARK_CAPTURE(searchFirst, prefix, byPrefix)
    ->Name("name_prefix_cold/ours")
    ->Apply(benchmarks::severalSizes)
    ->Iterations(20);
BENCHMARK_CAPTURE(searchFirst, group, byGroup)->Name("group_cold/ours")->Apply(benchmarks::severalSizes)->Iterations(5);

void askFirst(benchmark::State& state, int (*question)(ContactsFloor&)) {
    const std::filesystem::path file = benchmarks::floorOf(benchmarks::peopleOf(state));
    Timings timings(state);
    int matches = 0;
    for (auto _ : state) {
        ContactsFloor floor(file);
        timings.time([&] { matches = question(floor); });
    }
    found(state, matches);
}
BENCHMARK_CAPTURE(askFirst, part, likePart)->Name("name_part_cold/sql")->Apply(benchmarks::allSizes)->Iterations(5);
BENCHMARK_CAPTURE(askFirst, group, ofGroup)->Name("group_cold/sql")->Apply(benchmarks::severalSizes)->Iterations(5);
BENCHMARK_CAPTURE(askFirst, prefix, betweenBounds)
    ->Name("name_prefix_cold/sql")
    ->Apply(benchmarks::severalSizes)
    ->Iterations(20);

}  // namespace
