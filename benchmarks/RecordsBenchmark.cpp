#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>

#include <benchmark/benchmark.h>

#include "benchmarks/PhoneBooks.h"
#include "tessera/platform/objectstore/ObjectStore.h"

// Whole records: the members of a group, a walk over the extension rows by position, one update, and the end
// of all of them.

namespace {

using benchmarks::PhoneBookOf;

void listGroup(benchmark::State& state) {
    PhoneBookOf book(static_cast<int>(state.range(0)));
    int members = 0;
    for (auto _ : state) {
        const std::unique_ptr<Database::Iterator> found(book.manager().searchPBRecordOfPBGroup(CString(u"친구")));
        members = found == nullptr ? 0 : found->getNumItems();
    }
    state.counters["members"] = members;
}
BENCHMARK(listGroup)->Name("group/list")->Arg(1'000)->Arg(10'000)->Arg(65'000)->Unit(benchmark::kMillisecond);

/// A store whose extension table has that many rows, such as contacts with a group have; made when first asked for.
std::filesystem::path extendedStore(int rows) {
    const std::filesystem::path path = benchmarks::scratchFolder() / ("extended-" + std::to_string(rows) + ".db");
    if (std::filesystem::exists(path)) return path;
    PhoneBook::PhoneBookDBMgr manager;
    bool made =
        ObjectStore::mount(path.string()) && SUCCEEDED(manager.initDB(false)) && SUCCEEDED(manager.openDB(nullptr));
    {
        ObjectStoreBatch batch;
        PhoneBook::PBRecord person;
        person.dwCITypeMask = 0x10005;
        person.strGroup = u"친구";
        for (int i = 0; i < rows && made; ++i) {
            person.strName = CString(benchmarks::nameOf(i));
            person.strMobileTelephoneNumber = CString(benchmarks::mobileOf(i));
            made = manager.insertPBRecord(person, nullptr) == S_OK;
        }
        made = batch.end() && made;
    }
    manager.closeDB();
    ObjectStore::unmount();
    if (!made) throw std::runtime_error("the extension rows cannot be made");
    return path;
}

void walkExtensionRows(benchmark::State& state) {
    const std::filesystem::path store = extendedStore(static_cast<int>(state.range(0)));
    PhoneBook::PhoneBookDBMgr manager;
    if (!ObjectStore::mount(store.string()) || FAILED(manager.openDB(nullptr))) state.SkipWithError("not open");
    int rows = 0;
    CCeDBRecord row;
    for (auto _ : state) {
        const std::unique_ptr<Database::Iterator> all(
            manager.getIterator(UINT{PhoneBook::PBDBTBL_PHONEBOOKEXT}, 0, nullptr, nullptr));
        rows = all->getNumItems();
        for (int i = 0; i < rows; ++i) {
            if (all->getRecordAt(i, &row) != S_OK) state.SkipWithError("a row cannot be read");
        }
    }
    state.counters["rows"] = rows;
    state.SetItemsProcessed(state.iterations() * rows);
    manager.closeDB();
    ObjectStore::unmount();
}
BENCHMARK(walkExtensionRows)->Name("extension/walk")->Arg(10'000)->Arg(65'000)->Unit(benchmark::kMillisecond);

void update(benchmark::State& state) {
    PhoneBookOf book(static_cast<int>(state.range(0)));
    const std::unique_ptr<Database::Iterator> found(
        book.manager().searchPBRecord(PhoneBook::PBDBATTR_NAME, CString(u"boris g")));
    const DWORD oid = found->getAt(0);
    int round = 0;
    for (auto _ : state) {
        PhoneBook::PBRecord record;
        record.strName = u"Boris Garcia";
        record.strMobileTelephoneNumber = ++round % 2 == 0 ? u"010-1234-5678" : u"010-8765-4321";
        record.dwCITypeMask = 0x5;
        if (book.manager().updatePBRecord(oid, record) != S_OK) state.SkipWithError("the contact is not updated");
    }
}
// On a store of its own size: the measured updates stay in it.
BENCHMARK(update)->Name("update")->Arg(1'001)->UseRealTime()->Unit(benchmark::kMicrosecond);

void deleteAll(benchmark::State& state) {
    const std::filesystem::path full = PhoneBookOf::storeFile(static_cast<int>(state.range(0)));
    const std::filesystem::path store = benchmarks::scratchFolder() / "delete.db";
    for (auto _ : state) {
        state.PauseTiming();
        std::filesystem::copy_file(full, store, std::filesystem::copy_options::overwrite_existing);
        PhoneBook::PhoneBookDBMgr manager;
        if (!ObjectStore::mount(store.string()) || FAILED(manager.openDB(nullptr))) state.SkipWithError("not open");
        state.ResumeTiming();
        if (manager.deleteAllPBRecords() != S_OK) state.SkipWithError("not all is deleted");
        state.PauseTiming();
        manager.closeDB();
        ObjectStore::unmount();
        state.ResumeTiming();
    }
}
BENCHMARK(deleteAll)->Name("delete_all")->Arg(10'000)->Arg(65'000)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
