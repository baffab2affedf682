#include <spawn.h>
#include <string>
#include <sys/wait.h>

#include <benchmark/benchmark.h>

#include "benchmarks/PhoneBooks.h"

extern char** environ;

// A whole process: it opens the store, identifies one caller, and ends.

namespace {

int run(std::string program, std::string store, std::string command, std::string number) {
    std::string storeOption = "--store";
    char* arguments[] = {program.data(), storeOption.data(), store.data(), command.data(), number.data(), nullptr};
    posix_spawn_file_actions_t quiet;
    posix_spawn_file_actions_init(&quiet);
    posix_spawn_file_actions_addopen(&quiet, 1, "/dev/null", 1, 0);
    pid_t child = 0;
    int status = -1;
    if (posix_spawn(&child, program.c_str(), &quiet, nullptr, arguments, environ) == 0) waitpid(child, &status, 0);
    posix_spawn_file_actions_destroy(&quiet);
    return status;
}

void identifyAsAProcess(benchmark::State& state) {
    const int people = static_cast<int>(state.range(0));
    const std::string store = benchmarks::PhoneBookOf::storeFile(people).string();
    const std::u16string mobile = benchmarks::mobileOf(people / 2);
    for (auto _ : state) {
        if (run(TESSERA_TOOL, store, "identify", {mobile.begin(), mobile.end()}) != 0) {
            state.SkipWithError("nobody was identified");
        }
    }
}
BENCHMARK(identifyAsAProcess)
    ->Name("process/identify")
    ->Arg(1'000)
    ->Arg(10'000)
    ->Arg(65'000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

}  // namespace
