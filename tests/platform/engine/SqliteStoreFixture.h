#pragma once

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tessera/platform/engine/RecordEngine.h"
#include "tests/platform/engine/RecordBuilders.h"
#include "tests/support/TemporaryStore.h"

// A store on disk with contacts that have a name.

namespace engine_testing {

namespace fs = std::filesystem;

using Platform::Direction;
using Platform::Entry;
using Platform::Fetch;
using Platform::OrderId;
using Platform::RecordEngine;
using Platform::RecordStore;
using Platform::StoreOptions;
using testing_support::TemporaryFolder;

inline constexpr CEPROPID name = property(2, Platform::kindText);
inline const StoreOptions quick{std::chrono::milliseconds(50), false};

inline std::unique_ptr<RecordStore> open(const fs::path& file, const std::string& locale = "") {
    return Platform::openSqliteStore(file, quick, locale);
}

inline std::unique_ptr<RecordEngine> connect(const fs::path& file) {
    const auto store = open(file);
    return store ? store->connect() : nullptr;
}

inline CEOID contactsOf(RecordEngine& engine) {
    CEOID database = 0;
    EXPECT_EQ(engine.findDatabase(TEXT("Contacts Database"), database), ERROR_SUCCESS);
    return database;
}

inline CEOID put(RecordEngine& engine, WStringView value) {
    CEOID record = 0;
    EXPECT_EQ(engine.put(contactsOf(engine), record, Writing().set(name, value).edits()), ERROR_SUCCESS);
    return record;
}

inline OrderId byName(RecordEngine& engine) {
    OrderId order = 0;
    EXPECT_EQ(engine.openOrder(contactsOf(engine), {name, 0}, order), ERROR_SUCCESS);
    return order;
}

inline std::vector<CEOID> walk(RecordEngine& engine, OrderId order) {
    std::vector<Entry> entries;
    EXPECT_EQ(engine.step(order, nullptr, Direction::forward, 1'000, Fetch::placesOnly, entries), ERROR_SUCCESS);
    std::vector<CEOID> records;
    for (const Entry& entry : entries) {
        records.push_back(entry.place.record);
    }
    return records;
}

}  // namespace engine_testing
