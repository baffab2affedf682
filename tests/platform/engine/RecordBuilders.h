#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "tessera/platform/engine/Record.h"

namespace engine_testing {

constexpr CEPROPID property(WORD ident, WORD kind) {
    return CEPROPID{ident} << 16 | kind;
}

/// A number as a property's value: its bytes, least significant first.
template <typename Number>
requires std::is_arithmetic_v<Number> std::string bytesOf(Number number) {
    std::string bytes(sizeof number, '\0');
    std::memcpy(bytes.data(), &number, sizeof number);
    if constexpr (std::endian::native == std::endian::big) bytes = std::string(bytes.rbegin(), bytes.rend());
    return bytes;
}

inline std::string bytesOf(WStringView text) {
    std::string bytes;
    for (const WCHAR unit : text) {
        bytes += bytesOf(static_cast<std::uint16_t>(unit));
    }
    return bytes;
}

inline std::string bytesOf(const WCHAR* text) {
    return bytesOf(WStringView(text));
}

/// The edits of one write, and the bytes that they borrow.
class Writing {
public:
    template <typename Value>
    Writing& set(CEPROPID id, const Value& value) {
        return setBytes(id, bytesOf(value));
    }
    Writing& setBytes(CEPROPID id, std::string bytes) {
        written_.push_back({id, std::move(bytes), false});
        return *this;
    }
    Writing& remove(CEPROPID id) {
        written_.push_back({id, {}, true});
        return *this;
    }

    std::vector<Platform::Edit> edits() const {
        std::vector<Platform::Edit> edits;
        for (const Written& one : written_) {
            edits.push_back({one.id, one.bytes, one.remove});
        }
        return edits;
    }

private:
    struct Written {
        CEPROPID id;
        std::string bytes;
        bool remove;
    };
    std::vector<Written> written_;
};

}  // namespace engine_testing
