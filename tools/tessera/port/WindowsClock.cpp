#include <algorithm>
#include <array>
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

}  // namespace

std::optional<std::tm> localTimeOf(std::time_t moment) {
    std::tm local{};
    if (localtime_s(&local, &moment) != 0) return std::nullopt;
    return local;
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
