#include <cstdio>
#include <filesystem>
#include <string>

#include <benchmark/benchmark.h>

#include "benchmarks/Floor.h"
#include "benchmarks/PhoneBooks.h"
#include "tessera/platform/base/Unicode.h"
#include "tessera/platform/objectstore/ObjectStore.h"

// A phone book comes in from a file, with full durability, beside prepared SQL inserts of the same rows and
// indexes in transactions of the same size.

namespace {

void removeStore(const std::filesystem::path& store) {
    for (const char* suffix : {"", "-wal", "-shm"})
        std::filesystem::remove(store.string() + suffix);
}

void import(benchmark::State& state) {
    const int people = static_cast<int>(state.range(0));
    const std::filesystem::path store = benchmarks::scratchFolder() / "import.db";
    CString file = *textOfUtf8(benchmarks::importFile(people).string());
    for (auto _ : state) {
        state.PauseTiming();
        removeStore(store);
        if (!ObjectStore::mount(store.string())) state.SkipWithError("the store cannot be made");
        PhoneBook::PhoneBookDBMgr manager;
        if (FAILED(manager.initDB(false)) || FAILED(manager.openDB(nullptr)))
            state.SkipWithError("it cannot be opened");
        state.ResumeTiming();
        if (FAILED(manager.buildDBFromFile(file, 0))) state.SkipWithError("nothing was imported");
        state.PauseTiming();
        manager.closeDB();
        ObjectStore::unmount();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * people);
}
BENCHMARK(import)->Name("import/lines")->Arg(10'000)->Arg(65'000)->Unit(benchmark::kMillisecond)->UseRealTime();

void sqlImport(benchmark::State& state) {
    const int people = static_cast<int>(state.range(0));
    const std::filesystem::path file = benchmarks::scratchFolder() / "floor-import.db";
    for (auto _ : state) {
        state.PauseTiming();
        removeStore(file);
        {
            benchmarks::SqlFloor floor(file.string());
            state.ResumeTiming();
            floor.insertInBatches(people);
            state.PauseTiming();
        }
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * people);
}
BENCHMARK(sqlImport)->Name("import/floor_sql")->Arg(10'000)->Arg(65'000)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
