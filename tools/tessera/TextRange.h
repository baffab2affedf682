#pragma once

#include <cstddef>

namespace Tool {

/// A part of a text, in its units.
struct TextRange {
    std::size_t begin;
    std::size_t end;
};

}  // namespace Tool
