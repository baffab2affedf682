#include "tessera/platform/objectstore/MountedStore.h"

#include <atomic>
#include <mutex>

#include "tessera/platform/objectstore/StorePlace.h"

namespace Platform {
namespace {

struct State {
    std::mutex mutex;  // guards the store and every change of the number
    std::shared_ptr<RecordStore> store;
    std::atomic<std::uint64_t> number = 1;
    std::atomic<std::uint64_t> givenUpBatches = 0;
};

/// Never destroyed, for the sake of static objects that are destroyed last of all.
State& state() {
    static State& instance = *new State;
    return instance;
}

}  // namespace

std::uint64_t MountedStore::number() {
    return state().number.load(std::memory_order_acquire);
}

std::shared_ptr<RecordStore> MountedStore::get(std::uint64_t& number) {
    const std::lock_guard lock(state().mutex);
    if (state().store == nullptr) {
        state().store = openEnvironmentStore();
        if (state().store == nullptr) return nullptr;
        ++state().number;
    }
    number = state().number;
    return state().store;
}

std::uint64_t MountedStore::replace(std::shared_ptr<RecordStore> store) {
    const std::lock_guard lock(state().mutex);
    state().store.swap(store);
    return ++state().number;
}

std::uint64_t MountedStore::givenUpBatches() {
    return state().givenUpBatches.load(std::memory_order_acquire);
}

void MountedStore::noteGivenUpBatch() {
    ++state().givenUpBatches;
}

}  // namespace Platform
