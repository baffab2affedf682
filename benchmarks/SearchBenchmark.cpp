#include <memory>
#include <string>

#include <benchmark/benchmark.h>

#include "benchmarks/Floor.h"
#include "benchmarks/PhoneBooks.h"
#include "tessera/platform/objectstore/ObjectStore.h"

// Names by a part of them and by initial consonants, on a warm phone book, beside one plain pass over all
// packed names.

namespace {

using benchmarks::PhoneBookOf;

void search(benchmark::State& state, const char16_t* key) {
    PhoneBookOf book(static_cast<int>(state.range(0)));
    int found = 0;
    for (auto _ : state) {
        const std::unique_ptr<Database::Iterator> matches(
            book.manager().searchPBRecord(PhoneBook::PBDBATTR_NAME, CString(key)));
        found = matches == nullptr ? 0 : matches->getNumItems();
    }
    state.counters["found"] = found;
}
BENCHMARK_CAPTURE(search, part, u"boris g")->Name("search/part")->Arg(1'000)->Arg(10'000)->Arg(65'000);
BENCHMARK_CAPTURE(search, part_many, u"민")->Name("search/part_many")->Arg(65'000);
BENCHMARK_CAPTURE(search, part_nobody, u"xyzzy")->Name("search/part_nobody")->Arg(65'000);
BENCHMARK_CAPTURE(search, initials, u"ㄱㅁㅅ")->Name("search/initials")->Arg(1'000)->Arg(10'000)->Arg(65'000);
BENCHMARK_CAPTURE(search, initials_nobody, u"ㅋㅋㅋ")->Name("search/initials_nobody")->Arg(65'000);

void memoryPass(benchmark::State& state) {
    const std::u16string packed = benchmarks::packedNames(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        benchmark::DoNotOptimize(std::u16string_view(packed).find(u"xyzzy"));
    }
}
BENCHMARK(memoryPass)->Name("search/floor_memory_pass")->Arg(65'000);

/// The first search of a process: the image of all contacts is read from the store. Another store mounted in
/// between makes each search a first one.
template <class Search>
void firstSearch(benchmark::State& state, Search search) {
    const int people = static_cast<int>(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        PhoneBookOf book(0);
        if (!ObjectStore::mount(PhoneBookOf::storeFile(people).string())) state.SkipWithError("it cannot be mounted");
        PhoneBook::PhoneBookDBMgr manager;
        if (FAILED(manager.openDB(nullptr))) state.SkipWithError("it cannot be opened");
        state.ResumeTiming();
        const std::unique_ptr<Database::Iterator> matches(search(manager));
        if (matches == nullptr) state.SkipWithError("nobody was found");
    }
}

void firstNameSearch(benchmark::State& state) {
    firstSearch(state, [](PhoneBook::PhoneBookDBMgr& manager) {
        return manager.searchPBRecord(PhoneBook::PBDBATTR_NAME, CString(u"boris g"));
    });
}
BENCHMARK(firstNameSearch)->Name("search/first")->Arg(1'000)->Arg(10'000)->Arg(65'000)->Unit(benchmark::kMillisecond);

void firstGroupList(benchmark::State& state) {
    firstSearch(state,
                [](PhoneBook::PhoneBookDBMgr& manager) { return manager.searchPBRecordOfPBGroup(CString(u"친구")); });
}
BENCHMARK(firstGroupList)->Name("group/list_first")->Arg(10'000)->Arg(65'000)->Unit(benchmark::kMillisecond);

}  // namespace
