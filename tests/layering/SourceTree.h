#pragma once

#include <filesystem>
#include <string_view>
#include <vector>

#include "tests/layering/IncludeRules.h"

// Reads from source files what the include rules are about.

namespace Layering {

struct Findings {
    std::vector<Include> includes;
    std::vector<SystemCondition> conditions;
};

/// What one source text holds, comments left out. `file` is its path from `root`, where headers are looked up.
Findings findingsIn(std::string_view text, const std::string& file, const std::filesystem::path& root);

/// What the sources below the folder hold; a folder that does not exist holds nothing.
Findings findingsBelow(const std::filesystem::path& folder, const std::filesystem::path& root);

}  // namespace Layering
