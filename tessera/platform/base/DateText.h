#pragma once

#include <optional>

#include "tessera/platform/base/CString.h"

namespace Platform {

/// A day of the calendar in the years 100 to 9999, and a time of that day.
struct CivilTime {
    int year = 0;
    int month = 0;
    int day = 0;
    int hour = 0;
    int minute = 0;
    int second = 0;

    friend bool operator==(const CivilTime&, const CivilTime&) = default;
};

bool isCivilTime(const CivilTime& time);

/// The date as the user's locale writes it, followed by " HH:MM:SS" when the time is wanted.
/// The locale is looked up in the environment at every call.
CString dateText(const CivilTime& time, bool withTimeOfDay);

/// Reads what dateText writes in any locale, and what COleDateTime::ParseDateTime promises beside it.
std::optional<CivilTime> civilTimeOfText(WStringView text);

}  // namespace Platform
