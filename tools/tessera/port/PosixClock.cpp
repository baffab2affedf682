#include <clocale>

#include "Clock.h"

namespace Tool::port {

std::optional<std::tm> localTimeOf(std::time_t moment) {
    std::tm local{};
    if (localtime_r(&moment, &local) == nullptr) return std::nullopt;
    return local;
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
