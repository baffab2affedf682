#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <string>

#include <gtest/gtest.h>

#include "tests/platform/objectstore/StoreTest.h"
#include "tests/support/Files.h"
#include "tests/support/Sql.h"

namespace objectstore_test {

using testing_support::readFile;
using testing_support::runSql;
using testing_support::writeFile;

/// The files of a folder, what is in them, but for the index of a log, which every reader may write.
inline std::map<std::string, std::string> filesButIndex(const std::filesystem::path& folder) {
    auto files = testing_support::folderContent(folder);
    std::erase_if(files, [](const auto& file) { return file.first.ends_with("-shm"); });
    return files;
}

/// A closed store with a database "Rows", in name order and then that of numbers, filled by `fill`.
inline void makeStore(const std::filesystem::path& file, const std::function<void(OpenDatabase& rows)>& fill) {
    ASSERT_TRUE(ObjectStore::mount(file.string(), testing_support::quickOptions())) << ObjectStore::errorText();
    makeDatabase(TEXT("Rows"), {{nameId, 0}});
    {
        OpenDatabase rows(TEXT("Rows"), numberId);
        fill(rows);
    }
    ObjectStore::unmount();
}

inline void addRows(OpenDatabase& rows, int count) {
    for (int i = 0; i < count; ++i)
        rows.add(Row().name(TEXT("김민수 ") + WString(1, static_cast<WCHAR>(u'a' + i % 26))).number(i));
}

/// All records of "Rows", or of another database, in the store, by identifier.
inline std::map<CEOID, ReadRecord> rowsIn(const std::filesystem::path& file, const WCHAR* name = TEXT("Rows")) {
    std::map<CEOID, ReadRecord> rows;
    EXPECT_TRUE(ObjectStore::mount(file.string(), testing_support::quickOptions())) << ObjectStore::errorText();
    {
        OpenDatabase database(name);
        for (const CEOID oid : database.walk())
            rows[oid] = database.readRecord(oid);
    }
    ObjectStore::unmount();
    return rows;
}

}  // namespace objectstore_test
