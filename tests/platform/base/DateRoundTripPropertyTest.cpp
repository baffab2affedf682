#include <iterator>
#include <string>

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include "tests/platform/base/LocalesByWriting.h"

namespace {

rc::Gen<DATE> arbitraryDay() {
    return rc::gen::map(rc::gen::inRange(-657434, 2958466), [](int day) { return static_cast<DATE>(day); });
}

}  // namespace

RC_GTEST_PROP(DateRoundTripModel, AnyDayComesBackWithItsTimeInAnyLocale, ()) {
    const auto writing = *rc::gen::inRange<std::size_t>(0, localesByWriting().size());
    const UserLocale locale(std::next(localesByWriting().begin(), static_cast<std::ptrdiff_t>(writing))->second);
    const COleDateTime day(*arbitraryDay());
    const int second = *rc::gen::inRange(0, 86'400);
    const COleDateTime date(day.GetYear(), day.GetMonth(), day.GetDay(), second / 3600, second / 60 % 60, second % 60);

    COleDateTime back;

    RC_ASSERT(back.ParseDateTime(date.Format()));
    RC_ASSERT(back.date() == date.date());
    RC_ASSERT(back.ParseDateTime(date.Format(), VAR_DATEVALUEONLY));
    RC_ASSERT(back.date() == day.date());
}

RC_GTEST_PROP(DateRoundTripModel, AnyTextIsReadAsAValidDateOrRefused, ()) {
    const auto letters = *rc::gen::container<WString>(rc::gen::map(
        rc::gen::element(0x30, 0x31, 0x32, 0x39, 0x20, 0x2D, 0x2F, 0x2E, 0x3A, 0x0D, 0xB144, 0xC6D4, 0xC77C, 0x200F),
        [](int letter) { return static_cast<WCHAR>(letter); }));
    const UserLocale locale(*rc::gen::element<std::string>("C", "ko_KR.UTF-8", "en_US.UTF-8", "bg_BG.UTF-8"));
    COleDateTime date(1.0);

    if (date.ParseDateTime(letters.c_str())) {
        RC_ASSERT(date.GetYear() >= 100 && date.GetYear() <= 9999);
    } else {
        RC_ASSERT(date.GetStatus() == COleDateTime::invalid && date.date() == 0.0);
    }
}
