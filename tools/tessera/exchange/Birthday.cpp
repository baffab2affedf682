#include "Birthday.h"

#include <algorithm>
#include <optional>

#include "../Records.h"
#include "tessera/platform/base/COleDateTime.h"

namespace Tool {

namespace {

bool isDigit(WCHAR unit) {
    return unit >= u'0' && unit <= u'9';
}

int numberOf(WStringView digits) {
    int number = 0;
    for (const WCHAR digit : digits)
        number = number * 10 + (digit - u'0');
    return number;
}

/// "T" and a time of day, which a birthday does without.
WStringView withoutTime(WStringView text) {
    const std::size_t mark = text.find(u'T');
    const bool isTime = mark != WStringView::npos && mark > 0 && isDigit(text[mark - 1]);
    return isTime ? text.substr(0, mark) : text;
}

/// Year, month and day in their full length, with dashes or without.
std::optional<COleDateTime> isoDayOf(WStringView text) {
    WString digits(text);
    if (text.size() == 10 && text[4] == u'-' && text[7] == u'-') digits.erase(7, 1).erase(4, 1);
    if (digits.size() != 8 || !std::all_of(digits.begin(), digits.end(), isDigit)) return std::nullopt;
    const WStringView all = digits;
    return COleDateTime(numberOf(all.substr(0, 4)), numberOf(all.substr(4, 2)), numberOf(all.substr(6, 2)));
}

std::optional<COleDateTime> dayOf(WStringView text) {
    if (const auto day = isoDayOf(withoutTime(text))) return day;
    COleDateTime day;
    if (!day.ParseDateTime(CString(text), VAR_DATEVALUEONLY)) return std::nullopt;
    return day;
}

}  // namespace

ReadBirthday readBirthday(WStringView text) {
    if (text.starts_with(TEXT("--"))) return {0, "has no year and is left out"};
    const auto day = dayOf(text);
    if (!day || day->GetStatus() != COleDateTime::valid) return {0, "is no date and is left out"};
    if (!canBeBirthday(day->date())) return {0, "is a date that cannot be kept and is left out"};
    return {day->date(), nullptr};
}

}  // namespace Tool
