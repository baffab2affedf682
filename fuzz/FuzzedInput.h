#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "tessera/platform/base/CString.h"

namespace fuzz {

/// Ends the process, which makes a finding of the input, when a property does not hold.
inline void require(bool holds, const char* property) {
    if (holds) return;
    std::fprintf(stderr, "property violated: %s\n", property);
    std::abort();
}

/// UTF-8 to UTF-16 for any bytes: what is not well-formed is taken byte by byte, and a surrogate by itself
/// may be written like any other character, so that every text of 16-bit units is some input.
inline std::u16string textOfBytes(std::string_view bytes) {
    std::u16string text;
    for (std::size_t i = 0; i < bytes.size();) {
        const auto lead = static_cast<std::uint8_t>(bytes[i]);
        const std::size_t length = lead >= 0xF0 && lead < 0xF5 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC2 ? 2 : 1;
        std::uint32_t point = lead & (0xFFu >> (length == 1 ? 0 : length + 1));
        bool whole = lead < 0xF5 && i + length <= bytes.size();
        for (std::size_t k = 1; whole && k < length; ++k) {
            const auto next = static_cast<std::uint8_t>(bytes[i + k]);
            whole = (next & 0xC0) == 0x80;
            point = point << 6 | (next & 0x3Fu);
        }
        if (!whole) {
            text += static_cast<char16_t>(lead);
            ++i;
            continue;
        }
        i += length;
        if (point > 0xFFFF) {
            text += static_cast<char16_t>(0xD7C0 + (point >> 10));
            text += static_cast<char16_t>(0xDC00 | (point & 0x3FF));
        } else {
            text += static_cast<char16_t>(point);
        }
    }
    return text;
}

/// Texts of the platform end at their first zero.
inline std::u16string upToZero(std::u16string text) {
    text.resize(std::min(text.find(u'\0'), text.size()));
    return text;
}

/// Takes an input apart from its front. Inputs are UTF-8 wherever a target wants text, so that a corpus can
/// be read and written by people.
class FuzzedInput {
public:
    FuzzedInput(const std::uint8_t* data, std::size_t size) : rest_(reinterpret_cast<const char*>(data), size) {}

    bool atEnd() const { return rest_.empty(); }

    /// 0 at the end.
    std::uint8_t byte() {
        if (rest_.empty()) return 0;
        const auto first = static_cast<std::uint8_t>(rest_.front());
        rest_.remove_prefix(1);
        return first;
    }

    /// One of the numbers below `count`; the digits '0', '1', ... choose 0, 1, ...
    std::size_t choice(std::size_t count) { return static_cast<std::uint8_t>(byte() - '0') % count; }

    /// The next bytes, fewer at the end.
    std::string_view bytes(std::size_t count) {
        const std::string_view taken = rest_.substr(0, count);
        rest_.remove_prefix(taken.size());
        return taken;
    }
    std::string_view rest() { return bytes(rest_.size()); }

    /// The text up to the next line feed, which is passed over.
    std::u16string line() {
        const std::string_view taken = bytes(rest_.find('\n'));
        byte();
        return textOfBytes(taken);
    }

private:
    std::string_view rest_;
};

}  // namespace fuzz
