#pragma once

#include <stdexcept>
#include <string>

#include "tessera/platform/objectstore/Session.h"

namespace testing_support {

/// Says where the mounted store's collation puts a text: as a key whose bytes compare as the texts do.
class CollationOracle {
public:
    explicit CollationOracle(CEPROPID property) : order_{property, 0} {}

    /// An empty name is one that the contact does not have.
    std::string keyOf(WStringView text) const {
        const Platform::SortKeys& keys = Platform::Session::current()->engine().sortKeys();
        if (text.empty()) return keys.keyOfRecord(order_, {});
        std::string bytes;
        for (const WCHAR unit : text) {
            bytes += static_cast<char>(unit & 0xFF);
            bytes += static_cast<char>(unit >> 8);
        }
        const auto key = keys.keyOf(order_, bytes);
        if (!key) throw std::invalid_argument("a property without an order");
        return *key;
    }

private:
    Platform::SortOrder order_;
};

}  // namespace testing_support
