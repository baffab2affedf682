#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Tool {

/// The word that was meant by one with a slip in it; empty when none is near.
std::string nearestWord(std::string_view typed, const std::vector<std::string>& words);

}  // namespace Tool
