#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <string_view>

#include "Clock.h"
#include "WindowsSystem.h"
#include "WindowsText.h"

namespace Tool::port {

namespace {

/// The locale of times that the environment names; empty when the system's settings are to say it.
std::string_view namedLocale() {
    for (const char* const variable : {"LC_ALL", "LC_TIME", "LANG"}) {
        const char* const value = std::getenv(variable);
        if (value != nullptr && *value != '\0') return value;
    }
    return {};
}

/// "ko_KR.UTF-8" is "ko-KR" for the system.
std::wstring systemNameOf(std::string_view locale) {
    std::wstring name = widened(locale.substr(0, locale.find_first_of(".@")));
    std::replace(name.begin(), name.end(), L'_', L'-');
    return name;
}

constexpr int firstYear = 1900;  // of the C library's calendar
constexpr int yearsOfRound = 400;
constexpr std::time_t secondsPerYear = std::chrono::seconds(std::chrono::years(1)).count();  // of such a round

/// How many years later, or earlier, the calendar is the same and the C library's clock goes, which it does in the
/// years from 1971 to 2999.
int yearsToClock(int year) {
    int later = 0;
    while (year + later <= 1970)
        later += yearsOfRound;
    while (year + later >= 3000)
        later -= yearsOfRound;
    return later;
}

}  // namespace

std::optional<std::tm> localTimeOf(std::time_t moment) {
    const std::chrono::year_month_day day(
        std::chrono::floor<std::chrono::days>(std::chrono::sys_seconds(std::chrono::seconds(moment))));
    const int later = yearsToClock(static_cast<int>(day.year()));
    moment += later * secondsPerYear;
    std::tm local{};
    if (localtime_s(&local, &moment) != 0) return std::nullopt;
    local.tm_year -= later;
    return local;
}

std::optional<std::time_t> momentOfLocalTime(std::tm local) {
    const int later = yearsToClock(local.tm_year + firstYear);
    local.tm_year += later;
    local.tm_isdst = -1;  // whether it is summer time then is to be found out
    const std::time_t moment = std::mktime(&local);
    if (moment == -1) return std::nullopt;  // no second of 1969 is asked for
    return moment - later * secondsPerYear;
}

/// The system has no locale of the name C either.
std::string timeInUserLocale(const std::tm& local) {
    const std::wstring name = systemNameOf(namedLocale());
    SYSTEMTIME time{};
    time.wHour = static_cast<WORD>(local.tm_hour);
    time.wMinute = static_cast<WORD>(local.tm_min);
    time.wSecond = static_cast<WORD>(local.tm_sec);
    std::array<wchar_t, 64> text{};
    const int length = GetTimeFormatEx(name.empty() ? LOCALE_NAME_USER_DEFAULT : name.c_str(), 0, &time, nullptr,
                                       text.data(), static_cast<int>(text.size()));
    return length > 1 ? narrowed({text.data(), static_cast<std::size_t>(length - 1)}) : std::string();
}

}  // namespace Tool::port
