#pragma once

#include <string>

#include "tessera/platform/engine/SortKeys.h"
#include "tests/platform/engine/RecordBuilders.h"

namespace engine_testing {

inline constexpr Platform::SortOrder byText{property(1, Platform::kindText), 0};
inline constexpr Platform::SortOrder byTextWithoutCase{property(1, Platform::kindText), Platform::sortCaseInsensitive};

/// The key of a value that has one.
inline std::string keyOf(const Platform::SortKeys& keys, const Platform::SortOrder& order, const std::string& value) {
    return keys.keyOf(order, value).value();
}

}  // namespace engine_testing
