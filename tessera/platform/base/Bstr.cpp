#include "tessera/platform/base/Bstr.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

// The length in bytes stands in the four bytes before the text.

namespace {

using ByteLength = std::uint32_t;

constexpr std::size_t unitsOfPrefix_ = sizeof(ByteLength) / sizeof(WCHAR);

ByteLength* prefixOf(BSTR text) {
    return reinterpret_cast<ByteLength*>(text - unitsOfPrefix_);
}

}  // namespace

BSTR SysAllocString(const WCHAR* text) {
    if (text == nullptr) return nullptr;
    const std::size_t length = WStringView(text).size();
    return length <= UINT32_MAX ? SysAllocStringLen(text, static_cast<UINT>(length)) : nullptr;
}

BSTR SysAllocStringLen(const WCHAR* text, UINT length) {
    if (length > UINT32_MAX / sizeof(WCHAR)) return nullptr;
    const std::size_t units = unitsOfPrefix_ + length + 1;
    auto* const memory = static_cast<WCHAR*>(std::calloc(units, sizeof(WCHAR)));
    if (memory == nullptr) return nullptr;

    const BSTR made = memory + unitsOfPrefix_;
    *prefixOf(made) = static_cast<ByteLength>(length * sizeof(WCHAR));
    if (text != nullptr) std::copy_n(text, length, made);
    return made;
}

void SysFreeString(BSTR text) {
    if (text != nullptr) std::free(prefixOf(text));
}

UINT SysStringLen(BSTR text) {
    return text != nullptr ? static_cast<UINT>(*prefixOf(text) / sizeof(WCHAR)) : 0;
}
