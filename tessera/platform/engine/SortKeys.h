#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "tessera/platform/engine/Record.h"

namespace Platform {

/// Flags of a sort order.
enum SortFlags : DWORD {
    sortDescending = 1,
    sortCaseInsensitive = 2,
    sortUnknownFirst = 4,
};

/// How a database is walked: by the values of one property. Property 0 is the order of creation.
struct SortOrder {
    CEPROPID property = 0;
    DWORD flags = 0;

    bool descending() const { return (flags & sortDescending) != 0; }
    friend bool operator==(const SortOrder&, const SortOrder&) = default;
};

/// Turns values into byte strings that compare, byte by byte, as the values are to be ordered:
/// numbers and times by value, text by the store's collation and then by code unit, so that two keys
/// are equal only when the values are. Descending plays no part: such an order is walked backwards.
class SortKeys {
public:
    /// The collation of an ICU locale name such as "ko_KR"; "" is the root collation.
    explicit SortKeys(const std::string& locale);
    ~SortKeys();

    /// The key of a value of the property's kind. A blob has no order and no key.
    std::optional<std::string> keyOf(const SortOrder& order, std::string_view value) const;
    /// The key of the record's sort property, or the key of the records that lack it.
    std::string keyOfRecord(const SortOrder& order, std::string_view packed) const;

    /// Changes when the same text may give another key; keys of two versions must not be mixed.
    std::string version() const;

private:
    struct Collators;
    std::unique_ptr<Collators> collators_;
};

}  // namespace Platform
