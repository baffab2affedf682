#include <algorithm>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>

#include "benchmarks/Floor.h"
#include "benchmarks/OtherProcess.h"
#include "benchmarks/PhoneBooks.h"
#include "benchmarks/Scratch.h"
#include "benchmarks/Timings.h"
#include "tessera/phonebook/PhoneBookDBMgr.h"
#include "tessera/platform/objectstore/CeDB.h"
#include "tessera/platform/objectstore/ObjectStore.h"
#include "tessera/platform/windows/Messages.h"

// Hearing of what others write: how long after another process's commit, how many waiting notifications a second, and
// how many changes a manager follows.

namespace {

using benchmarks::Timings;

constexpr WORD nameIdent = 0x4013;  // "FileAs"
constexpr WORD categoriesIdent = 0x0016;

/// The contacts as a program writes them that has no phone book: straight into their database.
class Contacts {
public:
    explicit Contacts(const CENOTIFYREQUEST* request = nullptr) {
        CEOID database = 0;
        handle_ = CeOpenDatabaseEx2(&database, u"Contacts Database", 0, 0, 0, request);
        if (handle_ == INVALID_HANDLE_VALUE) throw std::runtime_error(ObjectStore::errorText());
    }
    ~Contacts() { CloseHandle(handle_); }
    Contacts(const Contacts&) = delete;
    Contacts& operator=(const Contacts&) = delete;

    void add(int person) {
        const CCeDBProp name = CCeDBProp::ofText(nameIdent, CString(benchmarks::nameOf(person)));
        const CCeDBProp categories = CCeDBProp::ofText(categoriesIdent, u"친구, 가족");
        const CEPROPVAL values[] = {name.propVal(), categories.propVal()};
        if (CeWriteRecordProps(handle_, 0, 2, values) == 0) throw std::runtime_error(ObjectStore::errorText());
    }

private:
    HANDLE handle_;
};

/// A window that frees the notifications that it is sent, and does nothing else.
class IdleWindow : public CWnd {
public:
    IdleWindow() { CreateEx(0, AfxRegisterWndClass(0), u"idle", 0, 0, 0, 0, 0, 0, 0, nullptr); }
    ~IdleWindow() override { DestroyWindow(); }

protected:
    const MessageEntry* findHandler(UINT message) const override {
        static const MessageEntry handler{WM_DBNOTIFICATION, [](CWnd&, WPARAM, LPARAM lParam) -> LRESULT {
                                              const CENOTIFYREQUEST request{};
                                              return CeFreeNotification(&request,
                                                                        reinterpret_cast<CENOTIFICATION*>(lParam));
                                          }};
        return message == WM_DBNOTIFICATION ? &handler : CWnd::findHandler(message);
    }
};

/// A new store, which may be mounted while this lives.
class FreshStore {
public:
    explicit FreshStore(bool fullDurability) {
        options_.fullDurability = fullDurability;
        benchmarks::closeBook();
        std::filesystem::remove_all(folder());
        std::filesystem::create_directory(folder());
        mount();
        ObjectStore::unmount();
    }
    ~FreshStore() { ObjectStore::unmount(); }
    FreshStore(const FreshStore&) = delete;
    FreshStore& operator=(const FreshStore&) = delete;

    void mount() const {
        if (!ObjectStore::mount(path(), options_)) throw std::runtime_error(ObjectStore::errorText());
    }
    const ObjectStore::Options& options() const { return options_; }
    static std::string path() { return (folder() / "store.db").string(); }

private:
    static std::filesystem::path folder() { return benchmarks::scratchFolder() / "notifications"; }

    ObjectStore::Options options_;
};

double medianOf(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// Another process, which adds a contact to that store each time that it is told to.
benchmarks::OtherProcess::Work addContacts(const ObjectStore::Options& options) {
    if (!ObjectStore::mount(FreshStore::path(), options)) throw std::runtime_error(ObjectStore::errorText());
    return [contacts = std::make_shared<Contacts>()](int round) { contacts->add(round); };
}

void hear(benchmark::State& state, bool fullDurability) {
    const FreshStore store(fullDurability);
    benchmarks::OtherProcess writer([&] { return addContacts(store.options()); });
    store.mount();
    const IdleWindow window;
    const CENOTIFYREQUEST request{sizeof(CENOTIFYREQUEST), window.GetSafeHwnd(), CEDB_EXNOTIFICATION, 0, 0};
    const Contacts watched(&request);
    std::vector<double> sinceCommit;
    Timings timings(state);
    MSG message;
    for (auto _ : state) {
        writer.tell();
        GetMessage(&message);
        const double heard = benchmarks::secondsNow();
        DispatchMessage(&message);
        const benchmarks::OtherProcess::Times times = writer.wait();
        timings.record(heard - times.begun);
        sinceCommit.push_back(heard - times.done);  // negative when it is heard of before the writer goes on
    }
    state.counters["us_since_commit"] = 1e6 * medianOf(std::move(sinceCommit));
}
BENCHMARK_CAPTURE(hear, full, true)->Name("message/ours")->Iterations(200)->UseManualTime();
BENCHMARK_CAPTURE(hear, normal, false)->Name("message_normal_durability/ours")->Iterations(200)->UseManualTime();

/// A contact without numbers written in SQL by another process, which then says so by a pipe.
void hearByPipe(benchmark::State& state) {
    const std::filesystem::path file = benchmarks::newFile("messages.db");
    benchmarks::OtherProcess writer([&]() -> benchmarks::OtherProcess::Work {
        return [floor = std::make_shared<benchmarks::ContactsFloor>(file)](int round) {
            floor->insert({.name = benchmarks::nameOf(round)});
        };
    });
    Timings timings(state);
    for (auto _ : state) {
        const benchmarks::OtherProcess::Times times = writer.work();
        timings.record(benchmarks::secondsNow() - times.begun);
    }
}
BENCHMARK(hearByPipe)->Name("message/sql")->Iterations(200)->UseManualTime();

/// Another thread of this process, which writes all at once.
void addElsewhere(int people) {
    std::thread([&] {
        Contacts contacts;
        const ObjectStoreBatch batch;
        for (int person = 0; person < people; ++person)
            contacts.add(person);
    }).join();
}

int pumpAll() {
    int pumped = 0;
    for (MSG message; PeekMessage(&message); ++pumped)
        DispatchMessage(&message);
    return pumped;
}

/// The time of one of the messages that are waiting.
void drain(benchmark::State& state) {
    constexpr int waiting = 10'000;
    const FreshStore store(false);
    store.mount();
    const IdleWindow window;
    const CENOTIFYREQUEST request{sizeof(CENOTIFYREQUEST), window.GetSafeHwnd(), CEDB_EXNOTIFICATION, 0, 0};
    const Contacts watched(&request);
    Timings timings(state);
    for (auto _ : state) {
        addElsewhere(waiting);
        const double begun = benchmarks::secondsNow();
        if (pumpAll() != waiting) state.SkipWithError("not all was heard");
        timings.record((benchmarks::secondsNow() - begun) / waiting);
    }
}
BENCHMARK(drain)->Name("message_drain/ours")->Iterations(3)->UseManualTime();

/// The time of one new contact with categories, which gets its extension row.
void follow(benchmark::State& state, bool fullDurability) {
    constexpr int waiting = 1'000;
    const FreshStore store(fullDurability);
    store.mount();
    PhoneBook::PhoneBookDBMgr manager;
    if (FAILED(manager.initDB(true)) || FAILED(manager.openDB(nullptr))) state.SkipWithError("not open");
    Timings timings(state);
    DWORD rows = 0;
    for (auto _ : state) {
        addElsewhere(waiting);
        const double begun = benchmarks::secondsNow();
        pumpAll();
        timings.record((benchmarks::secondsNow() - begun) / waiting);
        rows += static_cast<DWORD>(waiting);
    }
    if (manager.getTable(PhoneBook::PBDBTBL_PHONEBOOKEXT)->getNumRecords() != rows) {
        state.SkipWithError("not every contact got its row");
    }
}
BENCHMARK_CAPTURE(follow, full, true)->Name("message_follow/ours")->Iterations(1)->UseManualTime();
BENCHMARK_CAPTURE(follow, normal, false)->Name("message_follow_normal_durability/ours")->Iterations(3)->UseManualTime();

}  // namespace
