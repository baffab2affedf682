#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "tessera/platform/engine/RecordEngine.h"

namespace Platform {

/// How many entries to read after a block that was used up: more each time, within bounds of number and size.
inline std::size_t readAheadAfter(const std::vector<Entry>& block) {
    constexpr std::size_t growth = 4;
    constexpr std::size_t mostEntries = 512;
    constexpr std::size_t mostBytes = 1u << 20;
    std::size_t bytes = 1;
    for (const Entry& entry : block) {
        bytes += entry.packed.size();
    }
    const std::size_t fitting = mostBytes * block.size() / bytes;
    const std::size_t grown = std::min(block.size() * growth, mostEntries);
    return std::max<std::size_t>(std::min(fitting, grown), 1);
}

}  // namespace Platform
