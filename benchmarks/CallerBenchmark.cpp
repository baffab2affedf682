#include <cstring>
#include <string>

#include <benchmark/benchmark.h>

#include "benchmarks/Floor.h"
#include "benchmarks/PhoneBooks.h"

// Who is calling? Beside it the floors: an indexed SQL look-up that fetches the same fields, and one pass
// over all packed numbers.

namespace {

using benchmarks::PhoneBookOf;

constexpr DWORD allFields = 0x007F0FFF;
/// Steps through the people so that no two identifications in a row are of neighbours.
constexpr int stride = 7'919;

std::string asciiOf(const std::u16string& text) {
    return {text.begin(), text.end()};
}

void identify(benchmark::State& state) {
    const int people = static_cast<int>(state.range(0));
    PhoneBookOf book(people);
    int person = 0;
    for (auto _ : state) {
        person = (person + stride) % people;
        PhoneBook::PBRecord record;
        record.dwCITypeMask = allFields;
        DWORD oid = 0;
        const HRESULT result =
            book.manager().queryCallerInfo(CString(benchmarks::reducedMobileOf(person)), &record, &oid);
        if (FAILED(result) || oid == 0) state.SkipWithError("nobody was identified");
    }
}
BENCHMARK(identify)->Name("identify/hit")->Arg(1'000)->Arg(10'000)->Arg(65'000);

void identifyNobody(benchmark::State& state) {
    PhoneBookOf book(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        PhoneBook::PBRecord record;
        record.dwCITypeMask = allFields;
        DWORD oid = 0;
        if (SUCCEEDED(book.manager().queryCallerInfo(u"01099999999", &record, &oid))) {
            state.SkipWithError("somebody was identified");
        }
    }
}
BENCHMARK(identifyNobody)->Name("identify/miss")->Arg(1'000)->Arg(10'000)->Arg(65'000);

/// A short key stands inside many numbers, each of which the definition reads.
void identifyShortKey(benchmark::State& state) {
    PhoneBookOf book(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        PhoneBook::PBRecord record;
        record.dwCITypeMask = allFields;
        DWORD oid = 0;
        benchmark::DoNotOptimize(book.manager().queryCallerInfo(u"0102", &record, &oid));
        if (oid != 0) state.SkipWithError("somebody was identified");
    }
}
BENCHMARK(identifyShortKey)->Name("identify/short_key")->Arg(1'000)->Arg(10'000)->Unit(benchmark::kMillisecond);

void sqlLookUp(benchmark::State& state) {
    const int people = static_cast<int>(state.range(0));
    const std::string file = (benchmarks::scratchFolder() / "floor-lookup.db").string();
    std::remove(file.c_str());
    benchmarks::SqlFloor floor(file);
    floor.fill(people);
    int person = 0;
    for (auto _ : state) {
        person = (person + stride) % people;
        if (floor.lookUp(asciiOf(benchmarks::reducedMobileOf(person))) == 0) state.SkipWithError("nobody was found");
    }
}
BENCHMARK(sqlLookUp)->Name("identify/floor_sql")->Arg(65'000);

void memoryPass(benchmark::State& state) {
    const std::string packed = benchmarks::packedNumbers(static_cast<int>(state.range(0)));
    const std::string absent = "01099999999";
    for (auto _ : state) {
        benchmark::DoNotOptimize(memmem(packed.data(), packed.size(), absent.data(), absent.size()));
    }
}
BENCHMARK(memoryPass)->Name("identify/floor_memory_pass")->Arg(65'000);

}  // namespace
