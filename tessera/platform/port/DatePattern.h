#pragma once

#include <string>

#include "tessera/platform/port/Locale.h"

namespace Platform::port {

/// The short date of a locale, in the Gregorian calendar and with a four-digit year; ISO for "", for a locale that
/// is not known and for one whose short date is not made of three numbers.
DatePattern datePatternOf(const std::string& locale);

}  // namespace Platform::port
