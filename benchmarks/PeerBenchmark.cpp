#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "benchmarks/Peer.h"
#include "benchmarks/PhoneBooks.h"
#include "benchmarks/Scratch.h"
#include "benchmarks/Timings.h"

// The peer with the same people, where it has the operation.

namespace {

using benchmarks::PeerBook;
using benchmarks::People;
using benchmarks::Person;
using benchmarks::Stride;
using benchmarks::Timings;

std::filesystem::path placeOf(const People& people, PeerBook::Indexes indexes) {
    const char* suffix = indexes == PeerBook::Indexes::best ? "-peer.db" : "-peer-as-it-comes.db";
    return benchmarks::scratchFolder() / (fileNameOf(people) + suffix);
}

/// A file with these people; made when first asked for.
std::filesystem::path fileOf(const People& people, PeerBook::Indexes indexes) {
    const std::filesystem::path file = placeOf(people, indexes);
    if (std::filesystem::exists(file)) return file;
    PeerBook(file, indexes).import(benchmarks::listOf(people));
    benchmarks::settle(file);
    return file;
}

/// The open book, and where it is. Whoever opens the same file meanwhile is given the same book by the peer.
struct Opened {
    std::filesystem::path file;
    std::unique_ptr<PeerBook> book;
};
Opened& opened() {
    static Opened book;
    return book;
}

/// The book of these people; it stays open for the next benchmark.
PeerBook& bookOf(const People& people, PeerBook::Indexes indexes = PeerBook::Indexes::best) {
    Opened& now = opened();
    const std::filesystem::path file = fileOf(people, indexes);
    if (now.book == nullptr || now.file != file) now = {file, std::make_unique<PeerBook>(file, indexes)};
    return *now.book;
}

/// The file that it makes is the one for the other benchmarks.
void import(benchmark::State& state) {
    const People people = benchmarks::peopleOf(state);
    const std::vector<Person> list = benchmarks::listOf(people);
    const std::filesystem::path file = benchmarks::newFile("peer.db");
    Timings timings(state);
    for (auto _ : state) {
        PeerBook book(file, PeerBook::Indexes::best);
        timings.time([&] { book.import(list); });
    }
    benchmarks::settle(file);
    std::filesystem::rename(file, placeOf(people, PeerBook::Indexes::best));
}
BENCHMARK(import)->Name("import/peer")->Apply(benchmarks::severalSizes)->Iterations(1)->Repetitions(1);

void findEach(PeerBook& book, const People& people, benchmark::State& state) {
    Timings timings(state);
    Stride stride(people.count);
    for (auto _ : state) {
        const std::u16string number = benchmarks::personOf(people, stride.next()).mobile;
        int found = 0;
        timings.time([&] { found = book.withNumber(number); });
        if (found != 1) state.SkipWithError("nobody was found");
    }
}

void findSomebody(benchmark::State& state, PeerBook::Indexes indexes) {
    const People people = benchmarks::peopleOf(state);
    findEach(bookOf(people, indexes), people, state);
}
BENCHMARK_CAPTURE(findSomebody, best, PeerBook::Indexes::best)
    ->Name("identify_hit/peer")
    ->Apply(benchmarks::severalSizes);
BENCHMARK_CAPTURE(findSomebody, asItComes, PeerBook::Indexes::asItComes)
    ->Name("identify_hit/peer_as_it_comes")
    ->Apply(benchmarks::severalSizes);

void findNobody(benchmark::State& state) {
    PeerBook& book = bookOf(benchmarks::peopleOf(state));
    Timings timings(state);
    for (auto _ : state) {
        int found = 0;
        timings.time([&] { found = book.withNumber(u"010-9999-9999"); });
        if (found != 0) state.SkipWithError("somebody was found");
    }
}
BENCHMARK(findNobody)->Name("identify_miss/peer")->Apply(benchmarks::severalSizes);

void findFirst(benchmark::State& state) {
    const People people = benchmarks::peopleOf(state);
    const std::filesystem::path file = fileOf(people, PeerBook::Indexes::best);
    opened().book.reset();
    Timings timings(state);
    Stride stride(people.count);
    for (auto _ : state) {
        PeerBook book(file, PeerBook::Indexes::best);
        const std::u16string number = benchmarks::personOf(people, stride.next()).mobile;
        int found = 0;
        timings.time([&] { found = book.withNumber(number); });
        if (found != 1) state.SkipWithError("nobody was found");
    }
}
BENCHMARK(findFirst)->Name("identify_cold/peer")->Apply(benchmarks::severalSizes)->Iterations(20);

void findNames(benchmark::State& state, int (PeerBook::*ask)(const std::u16string&), const char16_t* text) {
    PeerBook& book = bookOf(benchmarks::peopleOf(state));
    Timings timings(state);
    int found = 0;
    for (auto _ : state)
        timings.time([&] { found = (book.*ask)(text); });
    if (found == 0) state.SkipWithError("nobody was found");
    state.counters["found"] = found;
}
BENCHMARK_CAPTURE(findNames, part, &PeerBook::withNamePart, u"boris g")
    ->Name("name_part/peer")
    ->Apply(benchmarks::severalSizes);
BENCHMARK_CAPTURE(findNames, common, &PeerBook::withNamePart, u"민")
    ->Name("name_common_part/peer")
    ->Apply(benchmarks::severalSizes);
BENCHMARK_CAPTURE(findNames, prefix, &PeerBook::withNameBeginning, u"boris g")
    ->Name("name_prefix/peer")
    ->Apply(benchmarks::severalSizes);

void openAndClose(benchmark::State& state) {
    const std::filesystem::path file = fileOf(benchmarks::peopleOf(state), PeerBook::Indexes::best);
    opened().book.reset();
    Timings timings(state);
    for (auto _ : state)
        timings.time([&] { PeerBook book(file, PeerBook::Indexes::best); });
}
BENCHMARK(openAndClose)->Name("open/peer")->Apply(benchmarks::severalSizes);

// Its writes come last: the people stay, but what they leave behind of themselves does too.

void insert(benchmark::State& state) {
    const People people = benchmarks::peopleOf(state);
    PeerBook& book = bookOf(people);
    int number = people.count;
    Timings timings(state);
    for (auto _ : state) {
        const Person person = benchmarks::personOf(people, number);
        timings.time([&] { book.put(number, person); });
        ++number;
    }
    while (number > people.count)
        book.remove(--number);
}
BENCHMARK(insert)->Name("insert/peer")->Apply(benchmarks::severalSizes)->Iterations(30);

void update(benchmark::State& state) {
    const People people = benchmarks::peopleOf(state);
    PeerBook& book = bookOf(people);
    const int number = people.count / 2;
    const Person person = benchmarks::personOf(people, number);
    Person other = person;
    other.mobile = u"010-9000-0000";
    int round = 0;
    Timings timings(state);
    for (auto _ : state) {
        const Person& now = ++round % 2 == 0 ? person : other;
        timings.time([&] { book.put(number, now); });
    }
    book.put(number, person);
}
BENCHMARK(update)->Name("update/peer")->Apply(benchmarks::severalSizes)->Iterations(30);

void remove(benchmark::State& state) {
    const People people = benchmarks::peopleOf(state);
    PeerBook& book = bookOf(people);
    std::vector<Person> newcomers;
    for (int i = 0; i < 30; ++i)
        newcomers.push_back(benchmarks::personOf(people, people.count + i));
    for (int i = 0; i < 30; ++i)
        book.put(people.count + i, newcomers[static_cast<std::size_t>(i)]);
    int number = people.count;
    Timings timings(state);
    for (auto _ : state) {
        timings.time([&] { book.remove(number); });
        ++number;
    }
}
BENCHMARK(remove)->Name("delete/peer")->Apply(benchmarks::severalSizes)->Iterations(30);

}  // namespace
