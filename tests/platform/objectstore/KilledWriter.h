#pragma once

#include <filesystem>
#include <stdexcept>

#include "tests/platform/objectstore/StoreFiles.h"
#include "tests/support/Forked.h"

namespace objectstore_test {

/// A process adds rows to the store's "Rows" and is killed, so that its log stays beside the file.
inline void addRowsAndDie(const std::filesystem::path& file, int count) {
    testing_support::Forked process([&](testing_support::Line& parent) {
        if (!ObjectStore::mount(file.string(), testing_support::quickOptions())) throw std::runtime_error("no store");
        OpenDatabase rows(TEXT("Rows"));
        addRows(rows, count);
        parent.say(true);
        parent.hear<bool>();
    });
    process.line().hear<bool>();
    process.kill();
    process.wait();
}

}  // namespace objectstore_test
