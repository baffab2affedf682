#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tessera/platform/objectstore/ObjectStoreFile.h"
#include "tests/platform/objectstore/StoreFiles.h"

namespace objectstore_test {

namespace fs = std::filesystem;
using Depth = ObjectStoreFile::Depth;
using Findings = std::vector<std::string>;

inline constexpr int someRows = 200;

/// A closed store with some rows, alone in its folder.
class StoreFile : public testing::Test {
protected:
    StoreFile() {
        makeStore(file, [](OpenDatabase& rows) {
            addRows(rows, someRows);
            for (int i = 0; i < 20; ++i)
                rows.erase(rows.to(static_cast<DWORD>(i)));
        });
    }

    Findings check(Depth depth) {
        Findings findings{"left from before"};
        EXPECT_TRUE(ObjectStoreFile::check(file.string(), depth, findings, testing_support::quickOptions()))
            << ObjectStore::errorText();
        return findings;
    }

    const testing_support::TemporaryFolder folder;
    const fs::path file = folder / "store.db";
};

using StoreFileCheck = StoreFile;
using StoreFileBackUp = StoreFile;

}  // namespace objectstore_test
