#include <array>
#include <new>
#include <stdexcept>

#include <unicode/uchar.h>
#include <unicode/ucol.h>
#include <unicode/uversion.h>

#include "tessera/platform/port/Locale.h"

namespace Platform::port {
namespace {

// A mapping that needs more than one code unit would move what stands behind it.
WCHAR oneUnitOr(UChar32 mapped, WCHAR original) {
    return mapped <= 0xFFFF ? static_cast<WCHAR>(mapped) : original;
}

struct CollatorDeleter {
    void operator()(UCollator* collator) const { ucol_close(collator); }
};
using CollatorHandle = std::unique_ptr<UCollator, CollatorDeleter>;

CollatorHandle openCollator(const std::string& locale) {
    UErrorCode status = U_ZERO_ERROR;
    CollatorHandle collator(ucol_open(locale.c_str(), &status));
    if (U_SUCCESS(status)) return collator;

    status = U_ZERO_ERROR;
    collator.reset(ucol_open("", &status));
    if (U_FAILURE(status)) throw std::runtime_error("ICU has no collation data");
    return collator;
}

std::string versionText(const UVersionInfo& version) {
    std::array<char, U_MAX_VERSION_STRING_LENGTH> text{};
    u_versionToString(version, text.data());
    return text.data();
}

}  // namespace

WCHAR lowerCase(WCHAR ch) {
    return oneUnitOr(u_tolower(ch), ch);
}

WCHAR upperCase(WCHAR ch) {
    return oneUnitOr(u_toupper(ch), ch);
}

struct Collator::Impl {
    CollatorHandle collator;
};

Collator::Collator(const std::string& locale, bool ignoreCase)
    : impl_(std::make_unique<Impl>(Impl{openCollator(locale)})) {
    ucol_setStrength(impl_->collator.get(), ignoreCase ? UCOL_SECONDARY : UCOL_TERTIARY);
}

Collator::~Collator() = default;

void Collator::appendSortKey(WStringView text, std::string& bytes) const {
    const WCHAR* units = text.empty() ? TEXT("") : text.data();
    const auto length = static_cast<int32_t>(text.size());

    // Most keys fit; a key that does not is made a second time, in the room that the first try asked for.
    std::array<std::uint8_t, 256> small;
    const auto room = static_cast<int32_t>(small.size());
    const int32_t needed = ucol_getSortKey(impl_->collator.get(), units, length, small.data(), room);
    if (needed <= 0) throw std::bad_alloc();
    // The last byte of a key is its only zero byte.
    if (needed <= room) {
        bytes.append(small.begin(), small.begin() + needed - 1);
        return;
    }
    const std::size_t before = bytes.size();
    bytes.resize(before + static_cast<std::size_t>(needed));
    ucol_getSortKey(impl_->collator.get(), units, length, reinterpret_cast<std::uint8_t*>(&bytes[before]), needed);
    bytes.pop_back();
}

std::string Collator::version() const {
    UErrorCode status = U_ZERO_ERROR;
    const char* rules = ucol_getLocaleByType(impl_->collator.get(), ULOC_ACTUAL_LOCALE, &status);
    UVersionInfo collation{};
    ucol_getVersion(impl_->collator.get(), collation);
    UVersionInfo icu{};
    u_getVersion(icu);
    return std::string(rules != nullptr ? rules : "root") + ' ' + versionText(collation) + ' ' + versionText(icu);
}

}  // namespace Platform::port
