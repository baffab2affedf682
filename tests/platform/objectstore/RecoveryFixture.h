#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tessera/platform/objectstore/ObjectStoreFile.h"
#include "tests/platform/objectstore/StoreFiles.h"

namespace objectstore_test {

namespace fs = std::filesystem;
using Depth = ObjectStoreFile::Depth;

inline constexpr std::size_t pageBytes = 4'096;

/// A store, and another one made of what can be saved of it.
class Recovery : public testing::Test {
protected:
    void makeRows(int count) {
        makeStore(file, [&](OpenDatabase& rows) { addRows(rows, count); });
    }

    ObjectStoreFile::Recovery recover() {
        ObjectStoreFile::Recovery recovery;
        EXPECT_TRUE(ObjectStoreFile::recover(file.string(), saved.string(), recovery, testing_support::quickOptions()))
            << ObjectStore::errorText();
        std::vector<std::string> findings;
        EXPECT_TRUE(ObjectStoreFile::check(saved.string(), Depth::full, findings, testing_support::quickOptions()));
        EXPECT_THAT(findings, testing::IsEmpty()) << "in the new store";
        return recovery;
    }

    void overwritePage(std::size_t page, const std::string& with = std::string(pageBytes, '\x5A')) {
        writeFile(file, readFile(file).replace(page * pageBytes, pageBytes, with));
    }

    /// What is in both is the same; answers how many of `before` are not in `after`.
    static std::size_t lost(const std::map<CEOID, ReadRecord>& before, const std::map<CEOID, ReadRecord>& after) {
        for (const auto& [oid, row] : after) {
            EXPECT_TRUE(before.contains(oid)) << oid << " was never there";
            if (!before.contains(oid)) continue;
            EXPECT_EQ(row.name(), before.at(oid).name());
            EXPECT_EQ(row.number(), before.at(oid).number());
        }
        return before.size() - after.size();
    }

    const testing_support::TemporaryFolder folder;
    const fs::path file = folder / "store.db";
    const fs::path saved = folder / "saved.db";
};

}  // namespace objectstore_test
