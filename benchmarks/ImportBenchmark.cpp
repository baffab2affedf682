#include <filesystem>
#include <stdexcept>
#include <vector>

#include <benchmark/benchmark.h>

#include "benchmarks/Floor.h"
#include "benchmarks/PhoneBooks.h"
#include "benchmarks/Scratch.h"
#include "benchmarks/Timings.h"
#include "tessera/platform/base/Unicode.h"
#include "tessera/platform/objectstore/ObjectStore.h"

// A file of people comes into a phone book that is in use, with full durability, beside prepared SQL inserts of the
// same rows and indexes in transactions of the same size.

namespace {

using benchmarks::People;
using benchmarks::Timings;

void severalSizesOnce(benchmark::internal::Benchmark* benchmark) {
    benchmarks::severalSizes(benchmark);
    benchmark->Iterations(2);
}

/// Somebody with all that somebody can have, who is then asked for: from now on the store keeps every order that it
/// will have, as SQL does from the beginning.
void bringIntoUse(PhoneBook::PhoneBookDBMgr& manager) {
    const benchmarks::Person person = benchmarks::personOf({.count = 0, .extended = true}, 3'000'000);
    PhoneBook::PBRecord record = benchmarks::recordOf(person);
    if (manager.insertPBRecord(record, nullptr) != S_OK ||
        benchmarks::identify(manager, CString(person.reducedMobile)) == 0) {
        throw std::runtime_error("the phone book is not in use");
    }
}

void import(benchmark::State& state) {
    CString file = *textOfUtf8(benchmarks::importFile(benchmarks::peopleOf(state)).string());
    benchmarks::closeBook();
    Timings timings(state);
    for (auto _ : state) {
        const std::filesystem::path store = benchmarks::newFile("import.db");
        if (!ObjectStore::mount(store.string())) state.SkipWithError("the store cannot be made");
        PhoneBook::PhoneBookDBMgr manager;
        if (FAILED(manager.initDB(false)) || FAILED(manager.openDB(nullptr))) state.SkipWithError("not open");
        bringIntoUse(manager);
        timings.time([&] {
            if (FAILED(manager.buildDBFromFile(file, 0))) state.SkipWithError("nothing was imported");
        });
        manager.closeDB();
        ObjectStore::unmount();
        benchmarks::removeDatabase(store);
    }
}
BENCHMARK(import)->Name("import/ours")->Apply(severalSizesOnce);
// Of their own: a million are imported once.
BENCHMARK(import)->Name("import/ours")->Arg(1'000'000)->UseManualTime()->Iterations(1)->Repetitions(1);

void insertMany(benchmark::State& state) {
    const std::vector<benchmarks::Person> people = benchmarks::listOf(benchmarks::peopleOf(state));
    Timings timings(state);
    for (auto _ : state) {
        const std::filesystem::path file = benchmarks::newFile("import.db");
        {
            benchmarks::ContactsFloor floor(file);
            timings.time([&] { floor.import(people); });
        }
        benchmarks::removeDatabase(file);
    }
}
BENCHMARK(insertMany)->Name("import/sql")->Apply(severalSizesOnce);
BENCHMARK(insertMany)->Name("import/sql")->Arg(1'000'000)->UseManualTime()->Iterations(1)->Repetitions(1);

}  // namespace
