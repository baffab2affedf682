#pragma once

#include <filesystem>
#include <map>
#include <string>

#include "tests/support/Privacy.h"
#include "tests/tools/ToolTest.h"

// What tests of commands on whole store files share.

namespace tool_test {

/// Every file right in a folder, and what it holds.
inline std::map<std::string, std::string> filesIn(const std::filesystem::path& folder) {
    std::map<std::string, std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.is_regular_file())
            files.emplace(entry.path().filename().string(), testing_support::readFile(entry.path()));
    }
    return files;
}

/// Writes over a store's last pages, as a disk might.
inline void damage(const std::filesystem::path& store, std::size_t pages) {
    constexpr std::size_t pageSize = 4'096;
    std::string bytes = testing_support::readFile(store);
    ASSERT_GT(bytes.size(), (pages + 4) * pageSize);
    bytes.replace(bytes.size() - pages * pageSize, std::string::npos, pages * pageSize, '\x5A');
    testing_support::writeFile(store, bytes);
}

using testing_support::isPrivate;

}  // namespace tool_test
