#include "tessera/platform/base/COleDateTime.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <optional>

#include "tessera/platform/base/DateText.h"

namespace {

using Platform::CivilTime;
using TickDuration = std::chrono::duration<std::int64_t, std::ratio<1, 10'000'000>>;

constexpr std::chrono::sys_days epochOfDates_ = std::chrono::year(1899) / 12 / 30;
constexpr std::chrono::sys_days epochOfFileTimes_ = std::chrono::year(1601) / 1 / 1;
constexpr std::int64_t fileTimeDay_ = (epochOfFileTimes_ - epochOfDates_).count();
constexpr std::int64_t firstDay_ = (std::chrono::sys_days(std::chrono::year(100) / 1 / 1) - epochOfDates_).count();
constexpr std::int64_t lastDay_ = (std::chrono::sys_days(std::chrono::year(9999) / 12 / 31) - epochOfDates_).count();
constexpr std::int64_t secondsPerDay_ = 86'400;
constexpr std::int64_t ticksPerDay_ = secondsPerDay_ * TickDuration::period::den;

/// A day, and the time of day in units of which `unitsPerDay` make a day.
struct DayAndTime {
    std::int64_t day = 0;
    std::int64_t time = 0;
};

/// Nothing for what is no date: no number, or outside the years 100 to 9999.
std::optional<DayAndTime> splitDate(DATE date, std::int64_t unitsPerDay) {
    const double day = std::trunc(date);
    const bool inRange = day >= static_cast<double>(firstDay_) && day <= static_cast<double>(lastDay_);
    if (!inRange) return std::nullopt;  // so does not-a-number compare

    DayAndTime split{static_cast<std::int64_t>(day),
                     std::llround(std::abs(date - day) * static_cast<double>(unitsPerDay))};
    if (split.time < unitsPerDay) return split;
    // Rounded up to midnight, which is the next day's unless there is none.
    if (split.day == lastDay_) return DayAndTime{lastDay_, unitsPerDay - 1};
    return DayAndTime{split.day + 1, 0};
}

DATE joinDate(const DayAndTime& split, std::int64_t unitsPerDay) {
    const double day = static_cast<double>(split.day);
    const double time = static_cast<double>(split.time) / static_cast<double>(unitsPerDay);
    return split.day < 0 ? day - time : day + time;
}

CivilTime civilOf(const DayAndTime& split) {
    const std::chrono::year_month_day day(epochOfDates_ + std::chrono::days(split.day));
    const auto second = static_cast<int>(split.time);
    return {static_cast<int>(day.year()),
            static_cast<int>(static_cast<unsigned>(day.month())),
            static_cast<int>(static_cast<unsigned>(day.day())),
            second / 3600,
            second / 60 % 60,
            second % 60};
}

DATE dateOf(const CivilTime& time) {
    const std::chrono::sys_days day = std::chrono::year(time.year) / time.month / time.day;
    const std::int64_t second = time.hour * 3600 + time.minute * 60 + time.second;
    return joinDate({(day - epochOfDates_).count(), second}, secondsPerDay_);
}

/// Nothing when the date is invalid.
std::optional<CivilTime> civilOf(const COleDateTime& date) {
    if (date.GetStatus() != COleDateTime::valid) return std::nullopt;
    const auto split = splitDate(date.date(), secondsPerDay_);
    return split ? std::optional(civilOf(*split)) : std::nullopt;
}

int partOf(const COleDateTime& date, int CivilTime::*part) {
    const auto civil = civilOf(date);
    return civil ? (*civil).*part : -1;
}

}  // namespace

COleDateTime::COleDateTime(DATE date) {
    if (splitDate(date, secondsPerDay_)) {
        date_ = date;
    } else {
        status_ = invalid;
    }
}

COleDateTime::COleDateTime(int year, int month, int day, int hour, int minute, int second) {
    const CivilTime time{year, month, day, hour, minute, second};
    if (isCivilTime(time)) {
        date_ = dateOf(time);
    } else {
        status_ = invalid;
    }
}

int COleDateTime::GetYear() const {
    return partOf(*this, &CivilTime::year);
}

int COleDateTime::GetMonth() const {
    return partOf(*this, &CivilTime::month);
}

int COleDateTime::GetDay() const {
    return partOf(*this, &CivilTime::day);
}

CString COleDateTime::Format(DWORD flags, LCID /*locale*/) const {
    const auto time = civilOf(*this);
    if (!time) return {};
    const bool midnight = time->hour == 0 && time->minute == 0 && time->second == 0;
    return Platform::dateText(*time, !midnight && (flags & VAR_DATEVALUEONLY) == 0);
}

BOOL COleDateTime::ParseDateTime(const WCHAR* text, DWORD flags, LCID /*locale*/) {
    date_ = 0.0;
    status_ = invalid;
    if (text == nullptr) return FALSE;
    auto time = Platform::civilTimeOfText(text);
    if (!time) return FALSE;

    if ((flags & VAR_DATEVALUEONLY) != 0) time->hour = time->minute = time->second = 0;
    date_ = dateOf(*time);
    status_ = valid;
    return TRUE;
}

BOOL fileTimeOfDate(DATE date, FILETIME& time) {
    const auto split = splitDate(date, ticksPerDay_);
    if (!split || split->day < fileTimeDay_) return FALSE;
    time = fileTimeOf(static_cast<std::uint64_t>((split->day - fileTimeDay_) * ticksPerDay_ + split->time));
    return TRUE;
}

DATE dateOfFileTime(const FILETIME& time) {
    constexpr std::uint64_t end = static_cast<std::uint64_t>(lastDay_ + 1 - fileTimeDay_) * ticksPerDay_;
    const std::uint64_t ticks = ticksOf(time);
    if (ticks >= end) return 0.0;
    const DayAndTime split{static_cast<std::int64_t>(ticks / ticksPerDay_) + fileTimeDay_,
                           static_cast<std::int64_t>(ticks % ticksPerDay_)};
    return joinDate(split, ticksPerDay_);
}

FILETIME currentFileTime() {
    // To ticks first: the clock's own unit may be too fine to count from 1601.
    const auto sinceUnixEpoch =
        std::chrono::duration_cast<TickDuration>(std::chrono::system_clock::now().time_since_epoch());
    const TickDuration sinceEpoch = sinceUnixEpoch - epochOfFileTimes_.time_since_epoch();
    return fileTimeOf(static_cast<std::uint64_t>(sinceEpoch.count()));
}
