#include <algorithm>
#include <csignal>
#include <ctime>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include <benchmark/benchmark.h>

#include "benchmarks/PhoneBooks.h"
#include "tessera/phonebook/PhoneBookDBMgr.h"
#include "tessera/platform/objectstore/CeDB.h"
#include "tessera/platform/objectstore/ObjectStore.h"
#include "tessera/platform/windows/Messages.h"

// Hearing of what others write: how long after another process's commit, how many waiting notifications a second, and
// how many changes a manager follows.

namespace {

constexpr WORD nameIdent = 0x4013;  // "FileAs"
constexpr WORD categoriesIdent = 0x0016;

/// The clock that all processes share.
double secondsNow() {
    timespec now{};
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

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

/// A new store, mounted while this lives.
class FreshStore {
public:
    explicit FreshStore(bool fullDurability) {
        options_.fullDurability = fullDurability;
        std::filesystem::remove_all(folder());
        std::filesystem::create_directory(folder());
        mount();
    }
    ~FreshStore() { ObjectStore::unmount(); }
    FreshStore(const FreshStore&) = delete;
    FreshStore& operator=(const FreshStore&) = delete;

    const ObjectStore::Options& options() const { return options_; }
    static std::string path() { return (folder() / "store.db").string(); }

private:
    static std::filesystem::path folder() { return benchmarks::scratchFolder() / "notifications"; }
    void mount() const {
        if (!ObjectStore::mount(path(), options_)) throw std::runtime_error(ObjectStore::errorText());
    }

    ObjectStore::Options options_;
};

/// When a write was asked for, and when it was committed.
struct WriteTimes {
    double asked = 0;
    double committed = 0;
};

/// Another process, which adds a contact each time that it is told to. It is made before this one has a store open.
class WritingProcess {
public:
    WritingProcess() {
        static_cast<void>(FreshStore::path());  // which both processes then have in common
        if (::pipe(go_) != 0 || ::pipe(done_) != 0) throw std::runtime_error("no pipe");
        process_ = ::fork();
        if (process_ == 0) work();
    }
    ~WritingProcess() {
        ::kill(process_, SIGKILL);
        ::waitpid(process_, nullptr, 0);
        for (const int end : {go_[0], go_[1], done_[0], done_[1]})
            ::close(end);
    }
    WritingProcess(const WritingProcess&) = delete;
    WritingProcess& operator=(const WritingProcess&) = delete;

    void openStore(const ObjectStore::Options& options) const { tell(options.fullDurability ? 'f' : 'n'); }
    void write() const { tell('w'); }
    WriteTimes times() const {
        WriteTimes times;
        if (::read(done_[0], &times, sizeof times) != sizeof times) throw std::runtime_error("the writer has ended");
        return times;
    }

private:
    void tell(char what) const {
        if (::write(go_[1], &what, 1) != 1) throw std::runtime_error("the writer has ended");
    }
    [[noreturn]] void work() noexcept {
        char told = 0;
        ObjectStore::Options options;
        if (::read(go_[0], &told, 1) != 1) ::_exit(1);
        options.fullDurability = told == 'f';
        if (!ObjectStore::mount(FreshStore::path(), options)) ::_exit(2);
        Contacts contacts;
        for (int person = 0; ::read(go_[0], &told, 1) == 1; ++person) {
            WriteTimes times{secondsNow(), 0};
            contacts.add(person);
            times.committed = secondsNow();
            if (::write(done_[1], &times, sizeof times) != sizeof times) break;
        }
        ::_exit(0);
    }

    int go_[2] = {-1, -1};
    int done_[2] = {-1, -1};
    pid_t process_ = -1;
};

double medianOf(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

void hear(benchmark::State& state) {
    const WritingProcess writer;
    const FreshStore store(state.range(0) != 0);
    writer.openStore(store.options());
    const IdleWindow window;
    const CENOTIFYREQUEST request{sizeof(CENOTIFYREQUEST), window.GetSafeHwnd(), CEDB_EXNOTIFICATION, 0, 0};
    const Contacts watched(&request);
    std::vector<double> sinceAsked;
    std::vector<double> sinceCommitted;
    MSG message;
    for (auto _ : state) {
        writer.write();
        GetMessage(&message);
        const double heard = secondsNow();
        DispatchMessage(&message);
        const WriteTimes times = writer.times();
        sinceAsked.push_back(heard - times.asked);
        sinceCommitted.push_back(heard - times.committed);  // negative when it is heard of before the writer goes on
        state.SetIterationTime(sinceAsked.back());
    }
    state.counters["us_since_call"] = medianOf(sinceAsked) * 1e6;
    state.counters["us_since_commit"] = medianOf(sinceCommitted) * 1e6;
}
BENCHMARK(hear)
    ->Name("notification/hear/full_durability")
    ->Arg(0)
    ->Arg(1)
    ->Iterations(500)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

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

void drain(benchmark::State& state) {
    const int waiting = static_cast<int>(state.range(0));
    const FreshStore store(false);
    const IdleWindow window;
    const CENOTIFYREQUEST request{sizeof(CENOTIFYREQUEST), window.GetSafeHwnd(), CEDB_EXNOTIFICATION, 0, 0};
    const Contacts watched(&request);
    for (auto _ : state) {
        state.PauseTiming();
        addElsewhere(waiting);
        state.ResumeTiming();
        if (pumpAll() != waiting) state.SkipWithError("not all was heard");
    }
    state.SetItemsProcessed(state.iterations() * waiting);
}
BENCHMARK(drain)->Name("notification/drain")->Arg(10'000)->UseRealTime()->Unit(benchmark::kMillisecond);

/// Each new contact has categories, and gets its extension row.
void follow(benchmark::State& state) {
    const int waiting = static_cast<int>(state.range(0));
    const FreshStore store(state.range(1) != 0);
    PhoneBook::PhoneBookDBMgr manager;
    if (FAILED(manager.initDB(true)) || FAILED(manager.openDB(nullptr))) state.SkipWithError("not open");
    DWORD rows = 0;
    for (auto _ : state) {
        state.PauseTiming();
        addElsewhere(waiting);
        state.ResumeTiming();
        pumpAll();
        rows += static_cast<DWORD>(waiting);
    }
    if (manager.getTable(PhoneBook::PBDBTBL_PHONEBOOKEXT)->getNumRecords() != rows % 0x10000) {
        state.SkipWithError("not every contact got its row");
    }
    state.SetItemsProcessed(state.iterations() * waiting);
}
BENCHMARK(follow)
    ->Name("notification/follow/contacts/full_durability")
    ->Args({10'000, 0})
    ->Args({1'000, 1})
    ->Iterations(1)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
