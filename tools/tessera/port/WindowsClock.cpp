#include <array>

#include "Clock.h"
#include "WindowsSystem.h"
#include "WindowsText.h"

namespace Tool::port {

std::optional<std::tm> localTimeOf(std::time_t moment) {
    std::tm local{};
    if (localtime_s(&local, &moment) != 0) return std::nullopt;
    return local;
}

std::string timeInUserLocale(const std::tm& local) {
    SYSTEMTIME time{};
    time.wHour = static_cast<WORD>(local.tm_hour);
    time.wMinute = static_cast<WORD>(local.tm_min);
    time.wSecond = static_cast<WORD>(local.tm_sec);
    std::array<wchar_t, 64> text{};
    const int length = GetTimeFormatEx(LOCALE_NAME_USER_DEFAULT, 0, &time, nullptr, text.data(), text.size());
    return length > 1 ? narrowed({text.data(), static_cast<std::size_t>(length - 1)}) : std::string();
}

}  // namespace Tool::port
