#include "tessera/platform/contacts/PackedValues.h"

#include <algorithm>
#include <cstdint>
#include <string>

#include "tessera/platform/contacts/ContactFields.h"

namespace Platform {

namespace {

WCHAR unitAt(std::string_view bytes, std::size_t index) {
    const auto low = static_cast<unsigned char>(bytes[2 * index]);
    const auto high = static_cast<unsigned char>(bytes[2 * index + 1]);
    return static_cast<WCHAR>(low | high << 8);
}

WCHAR upperOf(WCHAR unit) {
    if (unit < 0x80) return asciiUpper(unit);
    CString text(unit);
    text.MakeUpper();
    return text[0];
}

}  // namespace

FILETIME fileTimeOfPacked(std::string_view bytes) {
    std::uint64_t ticks = 0;
    for (std::size_t i = bytes.size(); i-- > 0;)
        ticks = ticks << 8 | static_cast<unsigned char>(bytes[i]);
    return fileTimeOf(ticks);
}

std::string packedFileTime(const FILETIME& time) {
    std::string bytes;
    for (int shift = 0; shift < 64; shift += 8)
        bytes += static_cast<char>(ticksOf(time) >> shift & 0xFF);
    return bytes;
}

std::strong_ordering compareInUpperCase(std::string_view bytes, WStringView upper) {
    const std::size_t length = bytes.size() / 2;
    const std::size_t common = std::min(length, upper.size());
    for (std::size_t i = 0; i < common; ++i) {
        const WCHAR unit = upperOf(unitAt(bytes, i));
        if (unit != upper[i]) return unit <=> upper[i];
    }
    return length <=> upper.size();
}

}  // namespace Platform
