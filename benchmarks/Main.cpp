#include <csignal>
#include <exception>
#include <fstream>
#include <iostream>
#include <string>
#include <sys/utsname.h>

#include <benchmark/benchmark.h>
#include <sqlite3.h>
#include <unicode/uversion.h>

#include "benchmarks/Floor.h"
#include "benchmarks/PhoneBooks.h"
#include "benchmarks/Scratch.h"

namespace {

/// What the processor calls itself; empty when the system does not say.
std::string processorName() {
    std::ifstream processors("/proc/cpuinfo");
    for (std::string line; std::getline(processors, line);) {
        if (line.starts_with("model name")) return line.substr(line.find(':') + 2);
    }
    return {};
}

std::string systemName() {
    utsname system{};
    if (::uname(&system) != 0) return {};
    return std::string(system.sysname) + " " + system.release + ", " + system.machine;
}

void describeTheRun() {
    benchmark::AddCustomContext("tessera", TESSERA_VERSION);
    benchmark::AddCustomContext("processor", processorName());
    benchmark::AddCustomContext("system", systemName());
    benchmark::AddCustomContext("file_system", benchmarks::fileSystem());
    benchmark::AddCustomContext("compiler", TESSERA_COMPILER);
    benchmark::AddCustomContext("sqlite", sqlite3_libversion());
    benchmark::AddCustomContext("icu", U_ICU_VERSION);
    benchmark::AddCustomContext("peer", TESSERA_PEER);
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
    if (benchmarks::isInMemory()) {
        std::cerr
            << "The temporary folder is in memory, where durability costs nothing: let TMPDIR name one on a disk.\n";
        return 2;
    }
    std::signal(SIGPIPE, SIG_IGN);  // the end of another process is seen by the writing itself
    describeTheRun();
    int status = 0;
    try {
        benchmark::RunSpecifiedBenchmarks();
    } catch (const std::exception& failure) {  // so that the scratch folder is removed all the same
        std::cerr << failure.what() << '\n';
        status = 1;
    }
    benchmarks::closeBook();
    benchmarks::closeFloor();
    return status;
}
