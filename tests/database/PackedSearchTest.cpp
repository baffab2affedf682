#include <string>

#include <gtest/gtest.h>

#include "tessera/database/PackedSearch.h"

namespace Database {
namespace {

TEST(PackedSearch, FindsAKeyInEveryPlaceOfALongText) {
    const std::string key = "010-1234";
    for (std::size_t at = 0; at < 200; ++at) {
        const std::string text = std::string(at, '0') + key + std::string(200 - at, '0');
        EXPECT_EQ(findInPacked<char>(text, key), at);
    }
}

}  // namespace
}  // namespace Database
