#include <clocale>

#include "Clock.h"

namespace Tool::port {

std::optional<std::tm> localTimeOf(std::time_t moment) {
    std::tm local{};
    if (localtime_r(&moment, &local) == nullptr) return std::nullopt;
    return local;
}

std::optional<std::time_t> momentOfLocalTime(std::tm local) {
    local.tm_isdst = -1;  // whether it is summer time then is to be found out
    local.tm_wday = -1;
    const std::time_t moment = std::mktime(&local);
    if (local.tm_wday == -1) return std::nullopt;  // a result of -1 alone is also a second of 1969
    return moment;
}

std::string timeInUserLocale(const std::tm& local) {
    const locale_t locale = newlocale(LC_TIME_MASK, "", nullptr);
    if (locale == nullptr) return {};
    char text[64];
    const std::size_t length = strftime_l(text, sizeof text, "%X", &local, locale);
    freelocale(locale);
    return {text, length};
}

}  // namespace Tool::port
