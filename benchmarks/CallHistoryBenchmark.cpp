#include <memory>
#include <string>

#include <benchmark/benchmark.h>

#include "benchmarks/Floor.h"
#include "benchmarks/PhoneBooks.h"

// A call logged into a full history, durably, and the history listed. Beside the logging its floor: the same two row
// writes in one SQL transaction.

namespace {

using benchmarks::PhoneBookOf;

/// A call from somebody in the phone book.
PhoneBook::CallEntry callFrom(int person, std::uint64_t ticks) {
    PhoneBook::CallEntry call;
    call.ftTimestamp = fileTimeOf(ticks);
    call.strCID = CString(benchmarks::reducedMobileOf(person));
    call.dwCallingTime = 60;
    call.dwCallType = 1;
    return call;
}

void logCall(PhoneBook::PhoneBookDBMgr& manager, PhoneBook::CallEntry call, benchmark::State& state) {
    if (manager.insertCallEntry(&call) != S_OK || call.strName.IsEmpty()) state.SkipWithError("the call is not logged");
}

void fillHistory(PhoneBook::PhoneBookDBMgr& manager, benchmark::State& state) {
    if (manager.deleteAllCallEntries() != S_OK) state.SkipWithError("the history is not emptied");
    for (int i = 0; i < static_cast<int>(PhoneBook::nMaxCallEntries_); ++i)
        logCall(manager, callFrom(i, 0), state);
}

void logIntoFull(benchmark::State& state) {
    const int people = static_cast<int>(state.range(0));
    PhoneBookOf book(people);
    fillHistory(book.manager(), state);
    int calls = 0;
    for (auto _ : state) {
        ++calls;
        logCall(book.manager(), callFrom(calls % people, static_cast<std::uint64_t>(calls)), state);
    }
}
// On stores of their own sizes: the measured calls stay in them.
BENCHMARK(logIntoFull)->Name("calls/log")->Arg(1'002)->Arg(10'002)->UseRealTime()->Unit(benchmark::kMicrosecond);

void logFloor(benchmark::State& state) {
    static int files = 0;
    const auto file = benchmarks::scratchFolder() / ("calls" + std::to_string(++files) + ".sqlite");
    benchmarks::CallLogFloor floor(file.string(), static_cast<int>(PhoneBook::nMaxCallEntries_));
    int calls = 0;
    for (auto _ : state) {
        ++calls;
        floor.log(calls, benchmarks::reducedMobileOf(calls % 1'000), benchmarks::nameOf(calls % 1'000));
    }
}
BENCHMARK(logFloor)->Name("calls/log_floor")->UseRealTime()->Unit(benchmark::kMicrosecond);

void listCalls(benchmark::State& state) {
    PhoneBookOf book(1'002);
    fillHistory(book.manager(), state);
    int listed = 0;
    for (auto _ : state) {
        const std::unique_ptr<Database::Iterator> calls(
            book.manager().getIterator(UINT{PhoneBook::PBDBTBL_CALLHISTORY}, 0, nullptr, nullptr));
        PhoneBook::CallEntry call;
        for (listed = 0; calls->next() == S_OK; ++listed) {
            if (book.manager().queryCallEntry(calls->getCur(), &call) != S_OK)
                state.SkipWithError("a call is not read");
        }
    }
    state.counters["calls"] = listed;
}
BENCHMARK(listCalls)->Name("calls/list")->Unit(benchmark::kMicrosecond);

void listRows(benchmark::State& state) {
    PhoneBookOf book(1'002);
    fillHistory(book.manager(), state);
    int listed = 0;
    for (auto _ : state) {
        const std::unique_ptr<Database::Iterator> calls(
            book.manager().getIterator(UINT{PhoneBook::PBDBTBL_CALLHISTORY}, 0, nullptr, nullptr));
        CCeDBRecord row;
        for (listed = 0; listed < calls->getNumItems(); ++listed) {
            if (calls->getRecordAt(listed, &row) != S_OK) state.SkipWithError("a row is not read");
        }
    }
    state.counters["calls"] = listed;
}
BENCHMARK(listRows)->Name("calls/list_rows")->Unit(benchmark::kMicrosecond);

}  // namespace
