#pragma once

#include <functional>
#include <memory>
#include <utility>

#include <gtest/gtest.h>

#include "tessera/platform/engine/RecordEngine.h"
#include "tessera/platform/objectstore/ObjectStore.h"
#include "tessera/platform/objectstore/Session.h"

namespace objectstore_test {

/// What a store was asked for; and where it is to fail.
struct EngineLog {
    int reads = 0;            ///< Questions about records and places.
    std::size_t entries = 0;  ///< Entries asked for by steps.
    int jumps = 0;            ///< Places asked for by their index.
    bool loseNextUnit = false;
    DWORD findError = ERROR_SUCCESS;    ///< What looking a database up by its name answers, unless it is success.
    DWORD infoError = ERROR_SUCCESS;    ///< The same for what a database says of itself.
    DWORD getError = ERROR_SUCCESS;     ///< The same for reading a record by its identifier.
    DWORD numberError = ERROR_SUCCESS;  ///< The same for looking a contact up by its number.
    DWORD eraseError = ERROR_SUCCESS;
    int erasures = 0;                      ///< Tried, whatever became of them.
    std::function<void()> beforeNextUnit;  ///< What others do just before a unit begins: by another thread.

    void clear() { *this = {}; }
};

/// An engine that notes what it is asked for and passes it on.
class CountingEngine : public Platform::RecordEngine {
public:
    CountingEngine(Platform::RecordStore& store, EngineLog& log) : store_(store), inner_(store.connect()), log_(log) {}

    const Platform::SortKeys& sortKeys() const override { return inner_->sortKeys(); }
    DWORD createDatabase(WStringView name, DWORD type, std::span<const Platform::SortOrder> orders,
                         CEOID& database) override {
        return inner_->createDatabase(name, type, orders, database);
    }
    DWORD dropDatabase(CEOID database) override { return inner_->dropDatabase(database); }
    DWORD findDatabase(WStringView name, CEOID& database) override {
        if (log_.findError != ERROR_SUCCESS) SetLastError(log_.findError);
        return log_.findError != ERROR_SUCCESS ? log_.findError : inner_->findDatabase(name, database);
    }
    DWORD databaseInfo(CEOID database, Platform::DatabaseInfo& info) override {
        return log_.infoError != ERROR_SUCCESS ? log_.infoError : inner_->databaseInfo(database, info);
    }
    DWORD openOrder(CEOID database, const Platform::SortOrder& order, Platform::OrderId& id) override {
        return inner_->openOrder(database, order, id);
    }
    DWORD get(CEOID database, CEOID record, std::string& packed) override {
        ++log_.reads;
        return log_.getError != ERROR_SUCCESS ? log_.getError : inner_->get(database, record, packed);
    }
    DWORD put(CEOID database, CEOID& record, std::span<const Platform::Edit> edits) override {
        return inner_->put(database, record, edits);
    }
    DWORD erase(CEOID database, CEOID record) override {
        ++log_.erasures;
        return log_.eraseError != ERROR_SUCCESS ? log_.eraseError : inner_->erase(database, record);
    }
    DWORD step(Platform::OrderId order, const Platform::Place* from, Platform::Direction direction, std::size_t limit,
               Platform::Fetch fetch, std::vector<Platform::Entry>& entries) override {
        ++log_.reads;
        log_.entries += limit;
        return inner_->step(order, from, direction, limit, fetch, entries);
    }
    DWORD stepTo(Platform::OrderId order, std::uint64_t index, Platform::Direction direction,
                 Platform::Entry& entry) override {
        ++log_.reads;
        ++log_.jumps;
        return inner_->stepTo(order, index, direction, entry);
    }
    DWORD findEqual(Platform::OrderId by, std::string_view key, Platform::OrderId along, Platform::Direction direction,
                    Platform::Place& found) override {
        ++log_.reads;
        return inner_->findEqual(by, key, along, direction, found);
    }
    DWORD findNumber(std::string_view number, const Platform::SortOrder& along, CEOID& record) override {
        ++log_.reads;
        if (log_.numberError != ERROR_SUCCESS) SetLastError(log_.numberError);
        return log_.numberError != ERROR_SUCCESS ? log_.numberError : inner_->findNumber(number, along, record);
    }
    DWORD placeOf(Platform::OrderId order, CEOID record, Platform::Place& place) override {
        ++log_.reads;
        return inner_->placeOf(order, record, place);
    }
    DWORD orderVersion(Platform::OrderId order, std::uint64_t& version) override {
        return inner_->orderVersion(order, version);
    }
    std::uint64_t storeVersion() override { return inner_->storeVersion(); }
    DWORD changesAfter(std::uint64_t sequence, std::size_t limit, std::vector<Platform::Change>& changes) override {
        return inner_->changesAfter(sequence, limit, changes);
    }
    DWORD lastChange(std::uint64_t& sequence) override { return inner_->lastChange(sequence); }
    std::uint64_t origin() const override { return inner_->origin(); }
    DWORD beginUnit() override {
        if (const auto others = std::exchange(log_.beforeNextUnit, nullptr)) others();
        return inner_->beginUnit();
    }
    /// A unit is lost as a crash loses it: with the engine object that began it.
    void dropUnit() noexcept override { inner_->dropUnit(); }
    DWORD endUnit() override {
        if (!std::exchange(log_.loseNextUnit, false)) return inner_->endUnit();
        inner_.reset();
        inner_ = store_.connect();
        return ERROR_DISK_FULL;
    }

private:
    Platform::RecordStore& store_;
    std::unique_ptr<Platform::RecordEngine> inner_;
    EngineLog& log_;
};

class CountingStore : public Platform::RecordStore {
public:
    explicit CountingStore(EngineLog& log) : inner_(Platform::openMemoryStore("")), log_(log) {}
    std::unique_ptr<Platform::RecordEngine> connect() override {
        return std::make_unique<CountingEngine>(*inner_, log_);
    }
    std::unique_ptr<Platform::CommitWatch> watchCommits() override { return inner_->watchCommits(); }

private:
    std::unique_ptr<Platform::RecordStore> inner_;
    EngineLog& log_;
};

/// A store in memory, mounted while this lives, that notes what it is asked for.
class CountingMount {
public:
    CountingMount() { EXPECT_EQ(Platform::Session::mount(std::make_shared<CountingStore>(log)), ERROR_SUCCESS); }
    ~CountingMount() { ObjectStore::unmount(); }
    CountingMount(const CountingMount&) = delete;
    CountingMount& operator=(const CountingMount&) = delete;

    EngineLog log;
};

}  // namespace objectstore_test
