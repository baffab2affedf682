#pragma once

#include <string>

#include "tessera/platform/port/Locale.h"

namespace Platform::port {

/// The short date of a locale, in the Gregorian calendar and with a four-digit year; ISO for "", for a locale that
/// is not known and for one whose short date is not made of three numbers.
DatePattern datePatternOf(const std::string& locale);

/// The same of a short date as the system has it, such as "dd.MM.yy".
DatePattern datePatternFrom(WStringView shortDate);

}  // namespace Platform::port
