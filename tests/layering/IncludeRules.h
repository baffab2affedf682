#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

// Who may include whom in the source tree.

namespace Layering {

/// One `#include` of a source file. Paths are relative to the root of the tree, with forward slashes.
struct Include {
    std::string file;
    int line = 0;
    std::string target;    ///< As found in the tree when it is one of ours, else as written.
    bool isOurs = false;   ///< Written in quotes: a header of the tree.
    bool isFound = false;  ///< Ours, and such a header exists.
};

/// A preprocessor condition that asks which system the code is compiled for.
struct SystemCondition {
    std::string file;
    int line = 0;
    std::string macro;
};

/// Why a file may not have what it has, as a sentence that begins with file and line; "" when it may.
std::string objectionTo(const Include& include, const std::set<std::string>& installedHeaders);
std::string objectionTo(const SystemCondition& condition);

/// The layer that a file belongs to: the longest folder of the table that holds it; "" for none.
std::string_view layerOf(std::string_view file);

}  // namespace Layering
