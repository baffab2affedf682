#include "tessera/platform/base/DateText.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <string>

#include "tessera/platform/port/Locale.h"

namespace Platform {
namespace {

/// One of the three numbers of a date as it is written.
struct Number {
    int value = 0;
    int digits = 0;
};
using Numbers = std::array<Number, 3>;

bool isWhiteSpace(WCHAR ch) {
    constexpr WStringView spaces = TEXT(" \t\n\v\f\r\u0085\u00A0\u1680\u2028\u2029\u202F\u205F\u3000");
    return spaces.find(ch) != WStringView::npos || (ch >= u'\u2000' && ch <= u'\u200A');
}

// The marks that make a date readable among right-to-left text are no part of the date.
bool isDirectionMark(WCHAR ch) {
    return ch == u'\u200E' || ch == u'\u200F' || ch == u'\u061C';
}

/// Walks over a text. Each step moves on and answers true, or stays and answers false.
class Reader {
public:
    explicit Reader(WStringView text) : text_(text) {}

    void skipSpace() {
        while (pos_ < text_.size() && (isWhiteSpace(text_[pos_]) || isDirectionMark(text_[pos_])))
            ++pos_;
    }

    /// White space in `expected` stands for any white space or none.
    bool literal(WStringView expected) {
        const std::size_t start = pos_;
        skipSpace();
        for (const WCHAR ch : expected) {
            if (isWhiteSpace(ch) || isDirectionMark(ch)) {
                skipSpace();
            } else if (pos_ < text_.size() && text_[pos_] == ch) {
                ++pos_;
                skipSpace();
            } else {
                pos_ = start;
                return false;
            }
        }
        skipSpace();
        return true;
    }

    bool character(WCHAR ch) {
        if (pos_ == text_.size() || text_[pos_] != ch) return false;
        ++pos_;
        return true;
    }

    bool number(int minDigits, int maxDigits, Number& number) {
        Number read;
        std::size_t end = pos_;
        for (; end < text_.size() && text_[end] >= u'0' && text_[end] <= u'9'; ++end) {
            if (++read.digits > maxDigits) return false;
            read.value = read.value * 10 + (text_[end] - u'0');
        }
        if (read.digits < minDigits) return false;
        pos_ = end;
        number = read;
        return true;
    }

    bool atEnd() const { return pos_ == text_.size(); }
    bool afterSpace() const { return pos_ > 0 && isWhiteSpace(text_[pos_ - 1]); }

private:
    WStringView text_;
    std::size_t pos_ = 0;
};

/// What stands around the three numbers of a date.
struct Frame {
    WStringView before;
    WStringView first;
    WStringView second;
    WStringView after;
    bool yearFirst = false;  ///< Whatever the locale says: units name the places.
};

// Forms that are read in every locale; an ending is tried before its absence.
constexpr std::array<Frame, 7> commonFrames_ = {{
    {TEXT(""), TEXT("-"), TEXT("-"), TEXT("")},
    {TEXT(""), TEXT("/"), TEXT("/"), TEXT("")},
    {TEXT(""), TEXT("."), TEXT("."), TEXT(".")},
    {TEXT(""), TEXT("."), TEXT("."), TEXT("")},
    {TEXT(""), TEXT(" "), TEXT(" "), TEXT("")},
    {TEXT(""), TEXT("\uB144"), TEXT("\uC6D4"), TEXT("\uC77C"), true},  // the Korean words for year, month and day
    {TEXT(""), TEXT("\u5E74"), TEXT("\u6708"), TEXT("\u65E5"), true},  // the Chinese and Japanese ones
}};

/// The places of year, month and day among the three numbers.
struct Places {
    std::size_t year;
    std::size_t month;
    std::size_t day;
};

constexpr Places yearMonthDay_ = {0, 1, 2};

// Every placement, the likely ones first.
constexpr std::array<Places, 6> placements_ = {{
    yearMonthDay_,
    {2, 1, 0},
    {2, 0, 1},
    {0, 2, 1},
    {1, 2, 0},
    {1, 0, 2},
}};

Places placesOf(port::DateOrder order) {
    switch (order) {
        case port::DateOrder::dayMonthYear:
            return {2, 1, 0};
        case port::DateOrder::monthDayYear:
            return {2, 0, 1};
        case port::DateOrder::yearMonthDay:
            break;
    }
    return yearMonthDay_;
}

/// A year has four digits; of a shorter one, the century is the one that puts it in 1930 to 2029.
std::optional<int> yearOf(const Number& number) {
    if (number.digits == 4) return number.value;
    if (number.digits > 2) return std::nullopt;
    return number.value + (number.value < 30 ? 2000 : 1900);
}

std::optional<CivilTime> dateAt(const Numbers& numbers, const Places& places) {
    if (numbers[places.month].digits > 2 || numbers[places.day].digits > 2) return std::nullopt;
    const std::optional<int> year = yearOf(numbers[places.year]);
    if (!year) return std::nullopt;
    const CivilTime date{*year, numbers[places.month].value, numbers[places.day].value};
    return isCivilTime(date) ? std::optional(date) : std::nullopt;
}

std::optional<CivilTime> dateOf(const Numbers& numbers, const Frame& frame, port::DateOrder userOrder) {
    if (frame.yearFirst) return dateAt(numbers, yearMonthDay_);
    if (const auto date = dateAt(numbers, placesOf(userOrder))) return date;
    for (const Places& places : placements_) {
        if (const auto date = dateAt(numbers, places)) return date;
    }
    return std::nullopt;
}

bool readNumbers(Reader& reader, const Frame& frame, Numbers& numbers) {
    return reader.literal(frame.before) && reader.number(1, 4, numbers[0]) &&  //
           reader.literal(frame.first) && reader.number(1, 4, numbers[1]) &&   //
           reader.literal(frame.second) && reader.number(1, 4, numbers[2]) &&  //
           reader.literal(frame.after);
}

/// Reads "HH:MM" or "HH:MM:SS" up to the end of the text; no text at all is midnight.
bool readTimeOfDay(Reader& reader, CivilTime& time) {
    if (reader.atEnd()) return true;
    Number hour, minute, second;
    if (!reader.afterSpace() && !reader.character(u'T')) return false;
    if (!reader.number(1, 2, hour) || !reader.character(u':') || !reader.number(2, 2, minute)) return false;
    if (reader.character(u':') && !reader.number(2, 2, second)) return false;
    reader.skipSpace();
    time.hour = hour.value;
    time.minute = minute.value;
    time.second = second.value;
    return reader.atEnd() && isCivilTime(time);
}

std::optional<CivilTime> readInFrame(WStringView text, const Frame& frame, port::DateOrder userOrder) {
    Reader reader(text);
    Numbers numbers;
    if (!readNumbers(reader, frame, numbers)) return std::nullopt;
    std::optional<CivilTime> time = dateOf(numbers, frame, userOrder);
    if (!time || !readTimeOfDay(reader, *time)) return std::nullopt;
    return time;
}

void appendNumber(CString& text, int value, int minDigits) {
    const std::string digits = std::to_string(value);
    for (int length = static_cast<int>(digits.size()); length < minDigits; ++length)
        text += u'0';
    for (const char digit : digits)
        text += static_cast<WCHAR>(digit);
}

void appendDate(CString& text, const CivilTime& time, const port::DatePattern& pattern) {
    const Places places = placesOf(pattern.order);
    const int shortDigits = pattern.padded ? 2 : 1;
    const std::array<WStringView, 3> behind = {pattern.separators[0], pattern.separators[1], pattern.after};

    text += pattern.before.c_str();
    for (std::size_t place = 0; place < behind.size(); ++place) {
        if (place == places.year) appendNumber(text, time.year, 4);
        if (place == places.month) appendNumber(text, time.month, shortDigits);
        if (place == places.day) appendNumber(text, time.day, shortDigits);
        text += CString(behind[place]);
    }
}

}  // namespace

bool isCivilTime(const CivilTime& time) {
    const auto month = static_cast<unsigned>(time.month);
    const auto day = static_cast<unsigned>(time.day);
    if (time.year < 100 || time.year > 9999 || month > 12 || day > 31) return false;
    if (!std::chrono::year_month_day(std::chrono::year(time.year), std::chrono::month(month), std::chrono::day(day))
             .ok()) {
        return false;
    }
    return time.hour >= 0 && time.hour < 24 && time.minute >= 0 && time.minute < 60 && time.second >= 0 &&
           time.second < 60;
}

CString dateText(const CivilTime& time, bool withTimeOfDay) {
    CString text;
    appendDate(text, time, port::userDatePattern());
    if (!withTimeOfDay) return text;

    WCHAR before = u' ';
    for (const int part : {time.hour, time.minute, time.second}) {
        text += before;
        appendNumber(text, part, 2);
        before = u':';
    }
    return text;
}

std::optional<CivilTime> civilTimeOfText(WStringView text) {
    const port::DatePattern user = port::userDatePattern();
    const Frame userFrame{user.before, user.separators[0], user.separators[1], user.after};
    if (const auto time = readInFrame(text, userFrame, user.order)) return time;
    for (const Frame& frame : commonFrames_) {
        if (const auto time = readInFrame(text, frame, user.order)) return time;
    }
    return std::nullopt;
}

}  // namespace Platform
