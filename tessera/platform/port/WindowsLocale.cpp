#include "tessera/platform/port/WindowsLocale.h"

#include <algorithm>
#include <array>
#include <bit>
#include <stdexcept>

#include "tessera/platform/port/Locale.h"
#include "tessera/platform/port/SystemLocale.h"
#include "tessera/platform/port/WindowsSystem.h"

namespace Platform::port {
namespace {

using LocaleName = std::array<WCHAR, LOCALE_NAME_MAX_LENGTH>;

/// "ko_KR" is "ko-KR" for the system; "" is its locale of no language. Names hold ASCII only.
WString systemNameOf(const std::string& locale) {
    WString name(locale.begin(), locale.end());
    std::ranges::replace(name, TEXT('_'), TEXT('-'));
    return name;
}

bool isKnown(const WString& name) {
    return name.empty() || IsValidLocaleName(name.c_str()) != 0;
}

std::string spell(const GUID& identifier) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (const std::uint8_t byte : std::bit_cast<std::array<std::uint8_t, sizeof identifier>>(identifier))
        text.append({digits[byte >> 4], digits[byte & 15]});
    return text;
}

/// A change of case of every code unit by itself.
class CaseMap {
public:
    explicit CaseMap(SystemDword change) {
        for (std::size_t i = 0; i < units_.size(); ++i)
            units_[i] = static_cast<WCHAR>(i);
        const auto all = units_;
        const auto count = static_cast<int>(all.size());
        const int mapped =
            LCMapStringEx(LOCALE_NAME_INVARIANT, change, all.data(), count, units_.data(), count, nullptr, nullptr, 0);
        if (mapped != count) throw std::runtime_error("the system has no table of upper and lower case");
    }

    WCHAR operator()(WCHAR unit) const { return units_[unit]; }

private:
    std::array<WCHAR, 0x10000> units_{};
};

}  // namespace

std::string icuNameOf(WStringView systemName) {
    const WStringView locale = systemName.substr(0, systemName.find(TEXT('_')));
    std::string name(locale.begin(), locale.end());
    std::ranges::replace(name, '-', '_');
    return name;
}

std::string systemLocale() {
    LocaleName name{};
    const int length = GetUserDefaultLocaleName(name.data(), static_cast<int>(name.size()));
    return length > 1 ? icuNameOf({name.data(), static_cast<std::size_t>(length - 1)}) : std::string();
}

std::optional<WString> shortDateOf(const std::string& locale) {
    const WString name = systemNameOf(locale);
    if (!isKnown(name)) return std::nullopt;
    std::array<WCHAR, 128> pattern{};
    const int length =
        GetLocaleInfoEx(name.c_str(), LOCALE_SSHORTDATE, pattern.data(), static_cast<int>(pattern.size()));
    if (length <= 1) return std::nullopt;
    return WString(pattern.data(), static_cast<std::size_t>(length - 1));
}

WCHAR lowerCase(WCHAR ch) {
    static const CaseMap lower(LCMAP_LOWERCASE);
    return lower(ch);
}

WCHAR upperCase(WCHAR ch) {
    static const CaseMap upper(LCMAP_UPPERCASE);
    return upper(ch);
}

struct Collator::Impl {
    WString locale;
    SystemDword flags = 0;

    int sortKey(WStringView text, std::string& bytes, std::size_t start) const {
        return LCMapStringEx(locale.c_str(), flags, text.data(), static_cast<int>(text.size()),
                             reinterpret_cast<WCHAR*>(&bytes[start]), static_cast<int>(bytes.size() - start), nullptr,
                             nullptr, 0);
    }
};

Collator::Collator(const std::string& locale, bool ignoreCase) : impl_(std::make_unique<Impl>()) {
    // Signs such as hyphens count, as letters do.
    impl_->flags = LCMAP_SORTKEY | SORT_STRINGSORT;
    if (ignoreCase) impl_->flags |= NORM_IGNORECASE | NORM_IGNOREKANATYPE | NORM_IGNOREWIDTH;
    if (WString name = systemNameOf(locale); isKnown(name)) impl_->locale = std::move(name);
}

Collator::~Collator() = default;

void Collator::appendSortKey(WStringView text, std::string& bytes) const {
    if (text.empty()) return;
    const std::size_t before = bytes.size();
    // Most keys fit; one that does not is made a second time, in the room that the system asks for.
    bytes.resize(before + 32 + text.size() * 8);
    int length = impl_->sortKey(text, bytes, before);
    if (length <= 0 && GetLastError() == ERROR_INSUFFICIENT_BUFFER) {
        const int needed = LCMapStringEx(impl_->locale.c_str(), impl_->flags, text.data(),
                                         static_cast<int>(text.size()), nullptr, 0, nullptr, nullptr, 0);
        bytes.resize(before + static_cast<std::size_t>(needed));
        length = impl_->sortKey(text, bytes, before);
    }
    if (length <= 0) {
        bytes.resize(before);
        throw std::runtime_error("the system cannot order this text");
    }
    // The last byte of a key is its only zero byte.
    bytes.resize(before + static_cast<std::size_t>(length) - 1);
}

std::string Collator::version() const {
    NLSVERSIONINFOEX version{};
    version.dwNLSVersionInfoSize = sizeof(version);
    const bool isTold = GetNLSVersionEx(COMPARE_STRING, impl_->locale.c_str(), &version) != 0;
    std::string text = "windows ";
    text.append(impl_->locale.empty() ? "root" : std::string(impl_->locale.begin(), impl_->locale.end()));
    if (!isTold) return text + " unknown";
    // Either tells of other rules by itself.
    return text + ' ' + std::to_string(version.dwNLSVersion) + ' ' + spell(version.guidCustomVersion);
}

}  // namespace Platform::port
