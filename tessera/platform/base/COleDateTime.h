#pragma once

#include "tessera/Export.h"
#include "tessera/platform/base/CString.h"
#include "tessera/platform/base/Types.h"

/// Parse the date only, and drop a time of day.
inline constexpr DWORD VAR_DATEVALUEONLY = 2;

/// A date and time of day, kept as days since 30 December 1899.
///
/// Text is in the user locale's short form with a four-digit year; in the C locale, and wherever no
/// locale is set, it is ISO (1990-03-05). What formats parses back to the same day. The locale is the one
/// that the environment names at the time of the call; the user's is the only one there is.
///
/// Before day 0 the integer part still counts days, and the fraction's magnitude is the time of day:
/// -1.25 is 29 December 1899, 06:00.
class TESSERA_API COleDateTime {
public:
    /// Whether there is a date; `null` is never answered.
    enum DateTimeStatus { valid = 0, invalid = 1, null = 2 };

    COleDateTime() = default;
    /// Invalid when the value is no number or lies outside the years 100 to 9999.
    explicit COleDateTime(DATE date);
    /// A civil date; invalid when there is no such day in the years 100 to 9999.
    COleDateTime(int year, int month, int day, int hour = 0, int minute = 0, int second = 0);

    /// `valid` with a date, `invalid` without one.
    DateTimeStatus GetStatus() const { return status_; }
    /// 0.0 when invalid.
    DATE date() const { return date_; }
    /// @{
    /// The civil date; -1 when invalid.
    int GetYear() const;
    int GetMonth() const;
    int GetDay() const;
    /// @}

    /// The date, and the time of day (HH:MM:SS) too when it is not midnight; VAR_DATEVALUEONLY leaves it
    /// out. Empty when invalid.
    CString Format(DWORD flags = 0, LCID locale = LOCALE_USER_DEFAULT) const;

    /// Reads a date in the locale's order first, then any other order of day, month and year that is
    /// a day of the calendar, and ISO always; a time of day, HH:MM or HH:MM:SS, may follow. The separators
    /// are the locale's, or two alike of '-', '/', '.' and white space, or the words of the Korean and Chinese long
    /// form. A year of one or two digits lies in 1930 to 2029. White space around the text means nothing.
    /// FALSE, and the value 0.0 with the status invalid, when the text is none of these.
    BOOL ParseDateTime(const WCHAR* text, DWORD flags = 0, LCID locale = LOCALE_USER_DEFAULT);

private:
    DATE date_ = 0.0;
    DateTimeStatus status_ = valid;
};

/// Between the two clocks, exactly on whole days. A date before 1601 has no FILETIME, nor has a value that
/// is no date at all: FALSE, and `time` is left alone.
TESSERA_API BOOL fileTimeOfDate(DATE date, FILETIME& time);
/// 0.0 for a time after the year 9999.
TESSERA_API DATE dateOfFileTime(const FILETIME& time);
/// The time now, UTC.
TESSERA_API FILETIME currentFileTime();
