#pragma once

#include <filesystem>
#include <string>

#include "tests/tools/ToolTest.h"

namespace tool_test {

/// Nothing of the file was imported, no store was made, and nothing was left behind.
inline void expectRefused(const Tool& tool, const std::string& path, const std::string& why) {
    expectFailure(tool("import", path), 3, why);
    EXPECT_FALSE(exists(tool.store())) << why;
    EXPECT_TRUE(std::filesystem::is_empty(tool.temporary())) << why;
}

}  // namespace tool_test
