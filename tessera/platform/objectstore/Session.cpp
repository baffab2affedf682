#include "tessera/platform/objectstore/Session.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <new>
#include <utility>

#include "tessera/platform/engine/StoreError.h"
#include "tessera/platform/objectstore/MountedStore.h"
#include "tessera/platform/port/ThreadLocal.h"

namespace Platform {
namespace {

/// The thread has come to its end: only what outlives its session, such as a static object, still calls.
thread_local bool threadEnded = false;

class ThreadSession {
public:
    ThreadSession() = default;
    ~ThreadSession() { threadEnded = true; }
    ThreadSession(const ThreadSession&) = delete;
    ThreadSession& operator=(const ThreadSession&) = delete;

    std::unique_ptr<Session> session;
};

/// Null in a thread that has none.
std::unique_ptr<Session>& ownSession() {
    return port::ofThisThread<ThreadSession>().session;
}

/// The same at any time. Where there is no memory to ask for it the thread has not asked before, and has none.
Session* sessionSoFar() noexcept {
    try {
        return threadEnded ? nullptr : ownSession().get();
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

std::atomic<std::uint64_t> sessionsMade = 0;

/// A call that was refused for what it asked; every other failure is one of storage.
bool isRefusal(DWORD error) {
    constexpr std::array refusals = {ERROR_INVALID_PARAMETER, ERROR_KEY_DELETED, ERROR_FILE_NOT_FOUND,
                                     ERROR_ALREADY_EXISTS};
    return std::find(refusals.begin(), refusals.end(), error) != refusals.end();
}

}  // namespace

Session* Session::current() {
    if (threadEnded) {
        setStoreError(ERROR_NOT_READY, "the thread has ended");
        return nullptr;
    }
    std::unique_ptr<Session>& session = ownSession();
    if (session != nullptr && session->mountNumber() == MountedStore::number()) return session.get();
    session.reset();

    std::uint64_t number = 0;
    auto store = MountedStore::get(number);
    if (store == nullptr) return nullptr;
    auto engine = store->connect();
    if (engine == nullptr) return nullptr;
    session = std::make_unique<Session>(std::move(store), std::move(engine), number);
    return session.get();
}

DWORD Session::mount(std::shared_ptr<RecordStore> store) {
    if (threadEnded) return setStoreError(ERROR_NOT_READY, "the thread has ended");
    auto engine = store->connect();
    if (engine == nullptr) return GetLastError();
    ownSession().reset();
    const std::uint64_t number = MountedStore::replace(store);
    ownSession() = std::make_unique<Session>(std::move(store), std::move(engine), number);
    return ERROR_SUCCESS;
}

void Session::unmount() {
    if (!threadEnded) ownSession().reset();
    MountedStore::replace(nullptr);
}

Session::Session(std::shared_ptr<RecordStore> store, std::unique_ptr<RecordEngine> engine, std::uint64_t mountNumber)
    : store_(std::move(store)), engine_(std::move(engine)), mountNumber_(mountNumber), id_(++sessionsMade) {}

StoreMoment Session::moment() {
    if (glanceDepth_ == 0) return {id_, engine_->storeVersion(), writes_};
    if (!glancedVersion_) glancedVersion_ = engine_->storeVersion();
    return {id_, *glancedVersion_, writes_};
}

void Session::beginGlance() {
    if (glanceDepth_++ == 0) engine_->beginGlance();
}

void Session::endGlance() {
    if (glanceDepth_ == 0 || --glanceDepth_ != 0) return;
    glancedVersion_.reset();
    engine_->endGlance();
}

template <class Write>
DWORD Session::write(Write&& call) {
    if (batchError_ != ERROR_SUCCESS) return batchError_;
    ++writes_;
    const DWORD error = call();
    if (inBatch() && error != ERROR_SUCCESS && !isRefusal(error)) MountedStore::noteGivenUpBatch();
    return error;
}

DWORD Session::createDatabase(WStringView name, DWORD type, std::span<const SortOrder> orders, CEOID& database) {
    return write([&] { return engine_->createDatabase(name, type, orders, database); });
}

DWORD Session::dropDatabase(CEOID database) {
    return write([&] { return engine_->dropDatabase(database); });
}

DWORD Session::put(CEOID database, CEOID& record, std::span<const Edit> edits) {
    return write([&] { return engine_->put(database, record, edits); });
}

DWORD Session::erase(CEOID database, CEOID record) {
    return write([&] { return engine_->erase(database, record); });
}

DWORD Session::enterBatch() {
    if (batchDepth_++ == 0) batchError_ = engine_->beginUnit();
    return batchError_;
}

void Session::giveUpBatch(DWORD error) noexcept {
    Session* const session = sessionSoFar();
    if (session == nullptr || !session->inBatch() || session->batchError_ != ERROR_SUCCESS) return;
    session->engine_->dropUnit();
    session->batchError_ = error;
    MountedStore::noteGivenUpBatch();
}

DWORD Session::leaveBatch() {
    if (batchDepth_ == 0) return ERROR_NOT_READY;  // the store was mounted anew inside the batch
    if (--batchDepth_ != 0) return batchError_;
    if (const DWORD notBegun = std::exchange(batchError_, ERROR_SUCCESS); notBegun != ERROR_SUCCESS) return notBegun;
    ++writes_;
    const DWORD error = engine_->endUnit();
    if (error != ERROR_SUCCESS) MountedStore::noteGivenUpBatch();
    return error;
}

}  // namespace Platform
