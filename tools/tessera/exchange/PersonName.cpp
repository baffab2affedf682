#include "PersonName.h"

#include "../port/Characters.h"
#include "ContactDraft.h"

namespace Tool {

namespace {

bool isEastAsian(WStringView text) {
    return isBlank(text) || port::beginsEastAsian(text.substr(text.find_first_not_of(u' ')));
}

WString joined(std::initializer_list<WStringView> parts, WStringView between) {
    WString text;
    for (const WStringView part : parts) {
        if (isBlank(part)) continue;
        if (!text.empty()) text += between;
        text += part;
    }
    return text;
}

}  // namespace

WString PersonName::whole() const {
    const bool familyFirst = isEastAsian(family) && isEastAsian(given);
    const WString core =
        familyFirst ? joined({family, given, middle}, TEXT("")) : joined({given, middle, family}, TEXT(" "));
    return joined({prefix, core, suffix}, TEXT(" "));
}

PersonName partsOfName(WStringView name) {
    constexpr auto npos = WStringView::npos;
    PersonName parts;
    if (const std::size_t comma = name.find(u','); comma != npos) {
        const WStringView behind = name.substr(comma + 1);
        parts.family = name.substr(0, comma);
        parts.given = behind.starts_with(u' ') ? behind.substr(1) : behind;
        return parts;
    }
    const std::size_t blank = name.find(u' ');
    if (blank == npos) {
        parts.given = name;
        return parts;
    }
    const WStringView front = name.substr(0, blank);
    const WStringView behind = name.substr(blank + 1);
    const bool isLatin = name.front() < 0x100;
    parts.given = isLatin ? front : behind;
    parts.family = isLatin ? behind : front;
    return parts;
}

}  // namespace Tool
