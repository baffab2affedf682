#include <cstdio>
#include <memory>
#include <string>

#include <benchmark/benchmark.h>

#include "benchmarks/Floor.h"
#include "benchmarks/PhoneBooks.h"

// What a program keeps in memory of each contact once it has searched them. Beside it the names and numbers alone,
// packed.

namespace {

using benchmarks::People;

/// What a program writes that is a number; negative when there is none.
double numberFrom(const std::string& command) {
    struct Close {
        void operator()(std::FILE* stream) const { ::pclose(stream); }
    };
    const std::unique_ptr<std::FILE, Close> output(::popen(command.c_str(), "r"));
    double number = -1;
    if (output == nullptr || std::fscanf(output.get(), "%lf", &number) != 1) return -1;
    return number;
}

void perContact(benchmark::State& state, double bytes) {
    state.counters["bytes_per_contact"] = bytes / static_cast<double>(state.range(0));
    state.SetIterationTime(0);
}

void keep(benchmark::State& state) {
    const std::string store = benchmarks::storeOf(benchmarks::peopleOf(state)).string();
    for (auto _ : state) {
        const double bytes = numberFrom("'" TESSERA_MEMORY_PROGRAM "' '" + store + "'");
        perContact(state, bytes);
        if (bytes < 0) state.SkipWithError("the memory is not known");
    }
}
BENCHMARK(keep)->Name("memory/ours")->Apply(benchmarks::allSizes)->Iterations(1);

void pack(benchmark::State& state) {
    const People people = benchmarks::peopleOf(state);
    for (auto _ : state) {
        perContact(state, static_cast<double>(benchmarks::packedNumbers(people).size() +
                                              benchmarks::packedNames(people).size() * sizeof(char16_t)));
    }
}
BENCHMARK(pack)->Name("memory/memory")->Apply(benchmarks::allSizes)->Iterations(1);

}  // namespace
