#pragma once

#include <optional>
#include <string>

#include "tessera/platform/port/Character.h"

// What ICU, or a system with such functions of its own, knows of locales by their ICU names.

namespace Platform::port {

/// The locale of the system's settings; "" where there are none but the environment.
std::string systemLocale();

/// The pattern of a locale's short date, such as "dd.MM.yy", in the Gregorian calendar: d, M and y stand for day,
/// month and year, other texts for themselves, some in single quotes. Nothing for a locale that is not known.
std::optional<WString> shortDateOf(const std::string& locale);

}  // namespace Platform::port
