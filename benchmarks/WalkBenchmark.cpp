#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "benchmarks/PhoneBooks.h"
#include "benchmarks/Scratch.h"
#include "benchmarks/Timings.h"
#include "tessera/platform/objectstore/ObjectStore.h"

// Every row of a table by its position, from the first to the last: the time of one row, which is the same however many
// there are.

namespace {

using benchmarks::Timings;
using Database::Iterator;
using PhoneBook::PhoneBookDBMgr;

/// The value by which the row of that number is sorted; of some types it comes round again.
CCeDBProp sortedValue(CCeDBProp::enType type, WORD ident, int row) {
    switch (type) {
        case CCeDBProp::typeI2:
            return CCeDBProp::ofI2(ident, static_cast<std::int16_t>(row));
        case CCeDBProp::typeFileTime:
            return CCeDBProp::ofFileTime(ident, fileTimeOf(static_cast<std::uint64_t>(row) + 1));
        default:
            return CCeDBProp::ofUI4(ident, static_cast<DWORD>(row) + 1);
    }
}

void fillTable(Database::Table& table, int rows) {
    std::vector<CCeDBProp> props;
    for (int i = 0; i < table.getNumAttrs(); ++i)
        props.emplace_back(table.getAttrDef(i)->getType(), table.getAttrIdent(i));
    for (int row = 0; row < rows; ++row) {
        props[0] = sortedValue(props[0].getType(), props[0].getIdent(), row);
        DWORD oid = 0;
        if (table.insertRecord(props.data(), oid) != S_OK) throw std::runtime_error("a row is not inserted");
    }
}

/// A store each of whose four databases has that many rows; made when first asked for.
std::filesystem::path filledTables(int rows) {
    const std::filesystem::path store = benchmarks::scratchFolder() / ("tables-" + std::to_string(rows) + ".db");
    if (std::filesystem::exists(store)) return store;
    std::filesystem::copy_file(benchmarks::storeOf({.count = 0}), store);
    benchmarks::OpenBook book(store);
    for (const auto table : {PhoneBook::PBDBTBL_PHONEBOOKEXT, PhoneBook::PBDBTBL_SPEEDDIALNO,
                             PhoneBook::PBDBTBL_AVAILABLEPBGROUP, PhoneBook::PBDBTBL_CALLHISTORY}) {
        ObjectStoreBatch batch;
        fillTable(*book.manager().getTable(table), rows);
        if (!batch.end()) throw std::runtime_error("the rows are not kept");
    }
    return store;
}

/// Times a walk, which answers how many rows it has met; what is recorded is the time of one.
template <class Walk>
void timeRows(benchmark::State& state, Walk walk) {
    Timings timings(state);
    for (auto _ : state) {
        const auto begin = Timings::Clock::now();
        const int rows = walk();
        const std::chrono::duration<double> taken = Timings::Clock::now() - begin;
        if (rows < state.range(0)) {
            state.SkipWithError("not all rows were read");
        } else {
            timings.record(taken.count() / rows);
        }
    }
}

void walkTable(benchmark::State& state, UINT table) {
    PhoneBookDBMgr& manager = benchmarks::warmBook(filledTables(static_cast<int>(state.range(0))));
    timeRows(state, [&] {
        const std::unique_ptr<Iterator> rows(manager.getIterator(table, 0, nullptr, nullptr));
        CCeDBRecord row;
        int read = 0;
        while (read < rows->getNumItems() && rows->getRecordAt(read, &row) == S_OK)
            ++read;
        return read;
    });
}
void severalTimes(benchmark::internal::Benchmark* benchmark) {
    benchmarks::severalSizes(benchmark);
    benchmark->Iterations(3);
}
BENCHMARK_CAPTURE(walkTable, extension, UINT{PhoneBook::PBDBTBL_PHONEBOOKEXT})
    ->Name("walk_extension/ours")
    ->Apply(severalTimes);
BENCHMARK_CAPTURE(walkTable, speedDial, UINT{PhoneBook::PBDBTBL_SPEEDDIALNO})
    ->Name("walk_speed_dial/ours")
    ->Apply(severalTimes);
BENCHMARK_CAPTURE(walkTable, groups, UINT{PhoneBook::PBDBTBL_AVAILABLEPBGROUP})
    ->Name("walk_groups/ours")
    ->Apply(severalTimes);
BENCHMARK_CAPTURE(walkTable, calls, UINT{PhoneBook::PBDBTBL_CALLHISTORY})->Name("walk_calls/ours")->Apply(severalTimes);

void walkContacts(benchmark::State& state) {
    PhoneBookDBMgr& manager = benchmarks::warmBook(benchmarks::storeOf(benchmarks::peopleOf(state)));
    timeRows(state, [&] {
        const std::unique_ptr<Iterator> contacts(manager.getIterator(UINT{PhoneBook::PBDBATTR_NAME}, nullptr, nullptr));
        int read = 0;
        while (read < contacts->getNumItems() && !contacts->getStringAt(read, 0).IsEmpty())
            ++read;
        return read;
    });
}
BENCHMARK(walkContacts)->Name("walk_contacts/ours")->Apply(severalTimes);

}  // namespace
