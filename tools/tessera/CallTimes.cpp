#include "CallTimes.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>

#include "System.h"
#include "tessera/platform/base/COleDateTime.h"
#include "tessera/platform/base/Unicode.h"

namespace Tool {

namespace {

using std::chrono::seconds;
using std::chrono::sys_days;
using std::chrono::sys_seconds;

constexpr std::uint64_t ticksPerSecond = 10'000'000;
constexpr sys_seconds firstTime = sys_days(std::chrono::year(1601) / 1 / 1);
constexpr sys_seconds endOfTimes = sys_days(std::chrono::year(10000) / 1 / 1);

/// Reads a text from its beginning on, as long as all is as expected.
class TimeReader {
public:
    explicit TimeReader(std::string_view text) : rest_(text) {}

    bool skip(std::string_view anyOf) {
        if (rest_.empty() || anyOf.find(rest_.front()) == std::string_view::npos) return false;
        rest_.remove_prefix(1);
        return true;
    }
    /// A number of just so many digits, up to `most`.
    bool read(int& number, std::size_t digits, int most) {
        const std::string_view text = rest_.substr(0, digits);
        const auto isDigit = [](char ch) { return ch >= '0' && ch <= '9'; };
        if (text.size() != digits || !std::all_of(text.begin(), text.end(), isDigit)) return false;
        number = 0;
        for (const char ch : text)
            number = number * 10 + (ch - '0');
        rest_.remove_prefix(digits);
        return number <= most;
    }
    bool atEnd() const { return rest_.empty(); }
    char front() const { return rest_.empty() ? '\0' : rest_.front(); }

private:
    std::string_view rest_;
};

bool readCivil(TimeReader& reader, std::tm& civil) {
    int year = 0;
    int month = 0;
    const bool minutes = reader.read(year, 4, 9999) && reader.skip("-") && reader.read(month, 2, 12) &&
                         reader.skip("-") && reader.read(civil.tm_mday, 2, 31) && reader.skip("T ") &&
                         reader.read(civil.tm_hour, 2, 23) && reader.skip(":") && reader.read(civil.tm_min, 2, 59);
    if (!minutes || (reader.skip(":") && !reader.read(civil.tm_sec, 2, 59))) return false;
    civil.tm_year = year - 1900;
    civil.tm_mon = month - 1;
    const std::chrono::year_month_day day(std::chrono::year(year), std::chrono::month(static_cast<unsigned>(month)),
                                          std::chrono::day(static_cast<unsigned>(civil.tm_mday)));
    return day.ok();
}

sys_seconds asIfUtc(const std::tm& civil) {
    const std::chrono::year year(civil.tm_year + 1900);
    const std::chrono::month month(static_cast<unsigned>(civil.tm_mon + 1));
    return sys_days(year / month / civil.tm_mday) + seconds(civil.tm_hour * 3600 + civil.tm_min * 60 + civil.tm_sec);
}

/// What stands behind the time of day says where that is.
std::optional<sys_seconds> momentOf(TimeReader& reader, const std::tm& civil) {
    if (reader.atEnd()) {
        const auto moment = momentOfLocalTime(civil);
        return moment ? std::optional(sys_seconds(seconds(*moment))) : std::nullopt;
    }
    if (reader.skip("Z")) return asIfUtc(civil);
    const int sign = reader.front() == '-' ? -1 : 1;
    int hours = 0;
    int minutes = 0;
    if (!reader.skip("+-") || !reader.read(hours, 2, 23) || !reader.skip(":") || !reader.read(minutes, 2, 59))
        return std::nullopt;
    return asIfUtc(civil) - sign * seconds(hours * 3600 + minutes * 60);
}

/// Nothing after the year 9999.
std::optional<sys_seconds> momentOf(const FILETIME& time) {
    const std::uint64_t sinceFirst = ticksOf(time) / ticksPerSecond;
    if (sinceFirst >= static_cast<std::uint64_t>((endOfTimes - firstTime).count())) return std::nullopt;
    return firstTime + seconds(sinceFirst);
}

}  // namespace

std::optional<FILETIME> timeOfIso(std::string_view text) {
    TimeReader reader(text);
    std::tm civil{};
    if (!readCivil(reader, civil)) return std::nullopt;
    const auto moment = momentOf(reader, civil);
    if (!moment || !reader.atEnd() || *moment < firstTime || *moment >= endOfTimes) return std::nullopt;
    return fileTimeOf(static_cast<std::uint64_t>((*moment - firstTime).count()) * ticksPerSecond);
}

std::string isoTime(const FILETIME& time) {
    const auto moment = momentOf(time);
    if (!moment) return {};
    const auto day = std::chrono::floor<std::chrono::days>(*moment);
    const std::chrono::year_month_day date(day);
    const std::chrono::hh_mm_ss clock(*moment - day);
    char text[32];
    std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02dZ", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                  static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                  static_cast<int>(clock.seconds().count()));
    return text;
}

std::string localText(const FILETIME& time) {
    const auto moment = momentOf(time);
    const auto local =
        moment ? localTimeOf(static_cast<std::time_t>(moment->time_since_epoch().count())) : std::nullopt;
    if (!local) return {};
    const COleDateTime day(local->tm_year + 1900, local->tm_mon + 1, local->tm_mday);
    return utf8Of(day.Format(VAR_DATEVALUEONLY).view()) + ' ' + timeOfDay(*local);
}

std::string durationText(DWORD seconds) {
    char text[32];
    if (seconds < 3600) {
        std::snprintf(text, sizeof text, "%u:%02u", seconds / 60, seconds % 60);
    } else {
        std::snprintf(text, sizeof text, "%u:%02u:%02u", seconds / 3600, seconds / 60 % 60, seconds % 60);
    }
    return text;
}

}  // namespace Tool
