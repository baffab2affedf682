#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>

#include <unicode/udat.h>
#include <unicode/uloc.h>

#include "tessera/platform/port/SystemLocale.h"

namespace Platform::port {
namespace {

struct FormatDeleter {
    void operator()(UDateFormat* format) const { udat_close(format); }
};

std::string languageOf(const char* locale) {
    std::array<char, ULOC_LANG_CAPACITY> language{};
    UErrorCode status = U_ZERO_ERROR;
    uloc_getLanguage(locale, language.data(), static_cast<int32_t>(language.size()), &status);
    return U_SUCCESS(status) ? std::string(language.data()) : std::string();
}

// ICU gives an unknown language the dates of whatever locale the process happens to have.
bool isKnownLanguage(const std::string& locale) {
    const std::string language = languageOf(locale.c_str());
    for (int32_t i = 0; i < uloc_countAvailable(); ++i) {
        if (languageOf(uloc_getAvailable(i)) == language) return true;
    }
    return false;
}

}  // namespace

std::string systemLocale() {
    return {};
}

std::optional<WString> shortDateOf(const std::string& locale) {
    if (!isKnownLanguage(locale)) return std::nullopt;
    // A locale whose own calendar is another one still writes Gregorian dates in its own manner.
    const std::string gregorian = locale + "@calendar=gregorian";
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<UDateFormat, FormatDeleter> format(
        udat_open(UDAT_NONE, UDAT_SHORT, gregorian.c_str(), TEXT("UTC"), -1, nullptr, 0, &status));
    if (U_FAILURE(status)) return std::nullopt;

    std::array<WCHAR, 128> pattern{};
    const int32_t length =
        udat_toPattern(format.get(), false, pattern.data(), static_cast<int32_t>(pattern.size()), &status);
    if (U_FAILURE(status)) return std::nullopt;
    return WString(pattern.data(), static_cast<std::size_t>(length));
}

}  // namespace Platform::port
