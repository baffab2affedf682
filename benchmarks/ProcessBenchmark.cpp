#include <optional>
#include <spawn.h>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <vector>

#include <benchmark/benchmark.h>

#include "benchmarks/Floor.h"
#include "benchmarks/PhoneBooks.h"
#include "benchmarks/Timings.h"

extern char** environ;

// A whole process: it opens the store, identifies one caller, and ends. What is measured is the processor's time, the
// process's own and the system's on its behalf. And the opening and closing alone, within this process.

namespace {

using benchmarks::People;
using benchmarks::Timings;

double secondsOf(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
}

/// The processor time of a program that is run to its end; nothing when it fails. The words are the program and its
/// arguments.
std::optional<double> processorTimeOf(std::vector<std::string> words) {
    std::vector<char*> arguments;
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t quiet;
    posix_spawn_file_actions_init(&quiet);
    posix_spawn_file_actions_addopen(&quiet, 1, "/dev/null", 1, 0);
    pid_t child = 0;
    int status = -1;
    rusage used{};
    if (posix_spawn(&child, words[0].c_str(), &quiet, nullptr, arguments.data(), environ) == 0) {
        ::wait4(child, &status, 0, &used);
    }
    posix_spawn_file_actions_destroy(&quiet);
    if (status != 0) return std::nullopt;
    return secondsOf(used.ru_utime) + secondsOf(used.ru_stime);
}

/// Runs the program for a person in the middle, again and again.
void runForSomebody(std::vector<std::string> words, const People& people, benchmark::State& state) {
    const std::u16string number = benchmarks::reducedMobileOf(people.count / 2);
    words.emplace_back(number.begin(), number.end());
    Timings timings(state);
    for (auto _ : state) {
        const std::optional<double> taken = processorTimeOf(words);
        if (taken) {
            timings.record(*taken);
        } else {
            state.SkipWithError("nobody was identified");
        }
    }
}

void identifyAsAProcess(benchmark::State& state) {
    const People people = benchmarks::peopleOf(state);
    runForSomebody({TESSERA_TOOL, "--store", benchmarks::storeOf(people).string(), "identify"}, people, state);
}
BENCHMARK(identifyAsAProcess)->Name("process/ours")->Apply(benchmarks::allSizes)->Iterations(50);

void lookUpAsAProcess(benchmark::State& state) {
    const People people = benchmarks::peopleOf(state);
    runForSomebody({TESSERA_FLOOR_PROGRAM, benchmarks::floorOf(people).string()}, people, state);
}
BENCHMARK(lookUpAsAProcess)->Name("process/sql")->Apply(benchmarks::allSizes)->Iterations(50);

void openAndClose(benchmark::State& state) {
    const std::filesystem::path store = benchmarks::storeOf(benchmarks::peopleOf(state));
    benchmarks::closeBook();
    Timings timings(state);
    for (auto _ : state)
        timings.time([&] { benchmarks::OpenBook book(store); });
}
BENCHMARK(openAndClose)->Name("open/ours")->Apply(benchmarks::allSizes);

void openAndCloseSql(benchmark::State& state) {
    const std::filesystem::path file = benchmarks::floorOf(benchmarks::peopleOf(state));
    Timings timings(state);
    for (auto _ : state)
        timings.time([&] { benchmarks::ContactsFloor floor(file); });
}
BENCHMARK(openAndCloseSql)->Name("open/sql")->Apply(benchmarks::allSizes);

}  // namespace
