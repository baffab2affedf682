// Dates. The input's first character chooses the user's locale, the second what follows: '0' a text to be read,
// '1' the eight bytes of a number of days.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string>

#include "fuzz/FuzzedInput.h"
#include "tessera/platform/base/COleDateTime.h"

using fuzz::require;

namespace {

constexpr std::array locales = {"C",           "ko_KR.UTF-8", "en_US.UTF-8", "de_DE.UTF-8",
                                "ja_JP.UTF-8", "ar_EG.UTF-8", "bg_BG.UTF-8"};

/// The Korean words name the places, so a short year needs no locale to be told from a day.
void checkKoreanWords(const COleDateTime& day) {
    const int year = day.GetYear();
    const bool shortYear = year >= 1930 && year <= 2029;
    std::u16string text;
    const auto append = [&](int number, char16_t word) {
        const std::string digits = std::to_string(number);
        text.append(digits.begin(), digits.end()).push_back(word);
    };
    append(shortYear ? year % 100 : year, u'년');
    append(day.GetMonth(), u'월');
    append(day.GetDay(), u'일');
    COleDateTime back;
    const bool read = back.ParseDateTime(text.c_str()) != FALSE;
    require(year < 1000 || (read && back.date() == day.date()), "the Korean words are read everywhere");
}

void checkValid(const COleDateTime& date) {
    require(date.GetYear() >= 100 && date.GetYear() <= 9999, "a valid date lies in the years 100 to 9999");
    const COleDateTime day(date.GetYear(), date.GetMonth(), date.GetDay());
    require(day.GetStatus() == COleDateTime::valid, "the parts of a valid date are a day of the calendar");

    COleDateTime back;
    require(back.ParseDateTime(date.Format(VAR_DATEVALUEONLY)) != FALSE, "what formats parses");
    require(back.date() == day.date(), "and is the same day");
    require(back.Format() == day.Format(), "and formats alike");
    require(back.ParseDateTime(date.Format(), VAR_DATEVALUEONLY) != FALSE, "with its time of day, too");
    require(back.date() == day.date(), "which is left out on demand");

    std::string iso = std::to_string(date.GetYear());
    iso.insert(0, 4 - iso.size(), '0');
    for (const int part : {date.GetMonth(), date.GetDay()})
        iso += (part < 10 ? "-0" : "-") + std::to_string(part);
    require(back.ParseDateTime(std::u16string(iso.begin(), iso.end()).c_str()) != FALSE, "ISO is read everywhere");
    require(back.date() == day.date(), "and means the same everywhere");
    checkKoreanWords(day);
}

void checkText(const std::u16string& text) {
    COleDateTime date(1.0);
    if (date.ParseDateTime(text.c_str()) == FALSE) {
        require(date.GetStatus() == COleDateTime::invalid && date.date() == 0.0, "what is no date reads as none");
        require(date.Format().IsEmpty() && date.GetYear() == -1, "and shows as nothing");
        return;
    }
    require(date.GetStatus() == COleDateTime::valid, "what parses is valid");
    checkValid(date);
    COleDateTime back;
    require(back.ParseDateTime(date.Format()) != FALSE && back.date() == date.date(),
            "what was read comes back to the second");
    const std::u16string amongBlanks = u" \t" + text + u"\r\n";
    require(back.ParseDateTime(amongBlanks.c_str()) != FALSE && back.date() == date.date(),
            "white space around a date means nothing");
}

void checkNumber(DATE number) {
    const COleDateTime date(number);
    FILETIME time;
    const bool hasFileTime = fileTimeOfDate(number, time) != FALSE;
    if (date.GetStatus() != COleDateTime::valid) {
        require(date.date() == 0.0 && date.Format().IsEmpty(), "a number that is no date shows as nothing");
        return;
    }
    checkValid(date);
    // Rounded to the second, the last moment of 1600 is in 1601.
    const bool atTheEdge = date.GetYear() == 1601 && date.GetMonth() == 1 && date.GetDay() == 1;
    require(atTheEdge || hasFileTime == (date.GetYear() >= 1601), "dates from 1601 on have a FILETIME");
    if (!hasFileTime) return;
    FILETIME again;
    require(fileTimeOfDate(dateOfFileTime(time), again) != FALSE, "there and back");
    const auto ticks = static_cast<double>(ticksOf(time));
    // The fraction of a number of days is good for some 40 microseconds.
    require(std::abs(static_cast<double>(ticksOf(again)) - ticks) <= 10'000.0, "to the millisecond");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::FuzzedInput input(data, size);
    setenv("LC_ALL", locales[input.choice(locales.size())], 1);
    if (input.choice(2) == 0) {
        checkText(fuzz::upToZero(fuzz::textOfBytes(input.rest())));
        return 0;
    }
    DATE number = 0.0;
    const std::string_view bytes = input.bytes(sizeof number);
    std::memcpy(&number, bytes.data(), bytes.size());
    checkNumber(number);
    return 0;
}
