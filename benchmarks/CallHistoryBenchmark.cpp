#include <memory>
#include <string>

#include <benchmark/benchmark.h>

#include "benchmarks/Floor.h"
#include "benchmarks/PhoneBooks.h"
#include "benchmarks/Scratch.h"
#include "benchmarks/Timings.h"

// A call logged into a full history, durably, with the caller's name from the phone book; in turn with it the same rows
// in SQL: the caller looked up, the oldest call deleted and one inserted, in one transaction. And the history listed.

namespace {

using benchmarks::People;
using benchmarks::SqlStatement;
using benchmarks::Stride;
using benchmarks::Timings;
using PhoneBook::PhoneBookDBMgr;

constexpr int fullHistory = static_cast<int>(PhoneBook::nMaxCallEntries_);

PhoneBook::CallEntry callFrom(int person, std::uint64_t ticks) {
    PhoneBook::CallEntry call;
    call.ftTimestamp = fileTimeOf(ticks);
    call.strCID = CString(benchmarks::reducedMobileOf(person));
    call.dwCallingTime = 60;
    call.dwCallType = 1;
    return call;
}

/// The manager of a store whose history is full of old calls.
PhoneBookDBMgr& bookWithCalls(const People& people, benchmark::State& state) {
    PhoneBookDBMgr& manager = benchmarks::warmBook(benchmarks::storeToChange(people));
    if (manager.deleteAllCallEntries() != S_OK) state.SkipWithError("the history is not emptied");
    for (int i = 0; i < fullHistory; ++i) {
        PhoneBook::CallEntry call = callFrom(i, 0);
        if (manager.insertCallEntry(&call) != S_OK) state.SkipWithError("the call is not logged");
    }
    return manager;
}

class CallsFloor {
public:
    explicit CallsFloor(const People& people)
        : contacts_(benchmarks::settledCopy(benchmarks::floorOf(people))),
          deleteOldest_(contacts_.database(),
                        "DELETE FROM call WHERE id=(SELECT id FROM call ORDER BY time,id LIMIT 1)"),
          insert_(contacts_.database(), "INSERT INTO call VALUES(NULL,?,?,?,4,60,1,'','',0,7)"),
          list_(contacts_.database(), "SELECT * FROM call ORDER BY time DESC") {
        contacts_.database().run(
            "CREATE TABLE call(id INTEGER PRIMARY KEY, time INTEGER, number TEXT, name TEXT, type INTEGER, "
            "duration INTEGER, kind INTEGER, network_name TEXT, dialled TEXT, hint INTEGER, flags INTEGER);"
            "CREATE INDEX by_time ON call(time)");
        for (int i = 0; i < fullHistory; ++i)
            insert_.run(0, benchmarks::reducedMobileOf(i), benchmarks::nameOf(i));
    }

    void log(std::int64_t time, const std::u16string& number) {
        const std::u16string name = contacts_.lookUp(number).name;
        benchmarks::SqlTransaction transaction(contacts_.database());
        deleteOldest_.run();
        insert_.run(time, number, name);
        transaction.commit();
    }
    int list() {
        int calls = 0;
        for (list_.ask(); list_.next(); ++calls) {
            PhoneBook::CallEntry call;
            call.ftTimestamp = fileTimeOf(static_cast<std::uint64_t>(list_.number(1)));
            call.strCID = CString(list_.text(2));
            call.strName = CString(list_.text(3));
            call.dwTelType = static_cast<DWORD>(list_.number(4));
            call.dwCallingTime = static_cast<DWORD>(list_.number(5));
            call.dwCallType = static_cast<DWORD>(list_.number(6));
            call.strCNAP = CString(list_.text(7));
            call.strCDNIP = CString(list_.text(8));
            benchmark::DoNotOptimize(call);
        }
        return calls;
    }

private:
    benchmarks::ContactsFloor contacts_;
    SqlStatement deleteOldest_;
    SqlStatement insert_;
    SqlStatement list_;
};

void logCall(benchmark::State& state) {
    const People people = benchmarks::peopleOf(state);
    PhoneBookDBMgr& manager = bookWithCalls(people, state);
    CallsFloor floor(people);
    Stride stride(people.count);
    std::int64_t calls = 0;
    Timings timings(state);
    Timings floorTimings(state, benchmarks::inSql);
    for (auto _ : state) {
        const int caller = stride.next();
        PhoneBook::CallEntry call = callFrom(caller, static_cast<std::uint64_t>(++calls));
        timings.time([&] {
            if (manager.insertCallEntry(&call) != S_OK) state.SkipWithError("the call is not logged");
        });
        if (call.strName.IsEmpty()) state.SkipWithError("the caller is not named");
        const std::u16string number = benchmarks::reducedMobileOf(caller);
        floorTimings.time([&] { floor.log(calls, number); });
    }
}
BENCHMARK(logCall)->Name("call_log/ours")->Apply(benchmarks::severalSizes);

void listCalls(benchmark::State& state) {
    PhoneBookDBMgr& manager = bookWithCalls(benchmarks::peopleOf(state), state);
    Timings timings(state);
    for (auto _ : state) {
        int listed = 0;
        timings.time([&] {
            const std::unique_ptr<Database::Iterator> calls(
                manager.getIterator(UINT{PhoneBook::PBDBTBL_CALLHISTORY}, 0, nullptr, nullptr));
            PhoneBook::CallEntry call;
            for (; calls->next() == S_OK && manager.queryCallEntry(calls->getCur(), &call) == S_OK; ++listed) {
            }
        });
        if (listed != fullHistory) state.SkipWithError("not all calls were listed");
    }
}
BENCHMARK(listCalls)->Name("call_list/ours")->Arg(1'000)->UseManualTime();

void listRows(benchmark::State& state) {
    CallsFloor floor(benchmarks::peopleOf(state));
    Timings timings(state);
    for (auto _ : state) {
        int listed = 0;
        timings.time([&] { listed = floor.list(); });
        if (listed != fullHistory) state.SkipWithError("not all calls were listed");
    }
}
BENCHMARK(listRows)->Name("call_list/sql")->Arg(1'000)->UseManualTime();

}  // namespace
