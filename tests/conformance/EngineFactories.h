#pragma once

#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "tessera/platform/engine/RecordEngine.h"
#include "tessera/platform/engine/StoreError.h"
#include "tests/support/TemporaryStore.h"

namespace engine_testing {

/// A fresh store of either engine, gone with the object.
class FreshStore {
public:
    FreshStore(bool onDisk, const Platform::StoreOptions& options, const std::string& locale) {
        store_ = onDisk ? Platform::openSqliteStore(folder_ / "store.db", options, locale)
                        : Platform::openMemoryStore(locale, options);
        if (!store_) throw std::runtime_error(Platform::storeErrorText());
    }

    std::unique_ptr<Platform::RecordEngine> connect() {
        auto engine = store_->connect();
        if (!engine) throw std::runtime_error(Platform::storeErrorText());
        return engine;
    }

private:
    testing_support::TemporaryFolder folder_;
    std::unique_ptr<Platform::RecordStore> store_;
};

struct EngineKind {
    const char* name;
    bool onDisk;
};

inline void PrintTo(const EngineKind& kind, std::ostream* out) {
    *out << kind.name;
}

inline constexpr EngineKind engineKinds[] = {{"Sqlite", true}, {"Memory", false}};

inline std::string nameOf(const testing::TestParamInfo<EngineKind>& kind) {
    return kind.param.name;
}

/// What a test of behaviour wants: no wait for the disk, and hardly any for another writer.
inline Platform::StoreOptions quickOptions() {
    return {std::chrono::milliseconds(1), false};
}

}  // namespace engine_testing
