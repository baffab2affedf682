#include "TelUri.h"

#include "../Records.h"
#include "VCardValue.h"
#include "tessera/platform/base/Unicode.h"

namespace Tool {

namespace {

bool beginsWith(WStringView text, WStringView scheme) {
    CString front(text.substr(0, scheme.size()));
    front.MakeLower();
    return front.view() == scheme;
}

/// Percent signs are to an address what equals signs are to quoted-printable.
WString withoutPercents(WStringView text) {
    std::string quotable = utf8Of(text);
    for (char& ch : quotable)
        ch = ch == '%' ? '=' : ch;
    std::string bytes;
    const auto plain = decodeQuotedPrintable(quotable, bytes) ? textOfUtf8(bytes) : std::nullopt;
    return WString(plain ? plain->view() : text);
}

/// Where numbers without a plus sign are valid: goes without saying in a phone book.
bool isContext(WStringView parameters) {
    return beginsWith(parameters, TEXT("phone-context=")) && parameters.find(u';') == WStringView::npos;
}

}  // namespace

WString telephoneNumberOf(WStringView value, ContactDraft& draft) {
    constexpr WStringView telephone = TEXT("tel:");
    WString number(value);
    std::string remark;
    // An address within an address comes of programs that take each other's for a number. No contact has a longer one.
    while (beginsWith(number, telephone) && number.size() <= static_cast<std::size_t>(longestText)) {
        WStringView rest = number;
        while (beginsWith(rest, telephone))
            rest.remove_prefix(telephone.size());
        const std::size_t end = rest.find(u';');
        const bool isWhole = end == WStringView::npos || isContext(rest.substr(end + 1));
        if (!isWhole) remark = quoted(rest.substr(end + 1)) + " behind the number " + quoted(value) + " is left out";
        number = withoutPercents(rest.substr(0, end));
    }
    if (beginsWith(number, TEXT("sip:")) || beginsWith(number, TEXT("sips:")) || beginsWith(number, TEXT("http"))) {
        remark = "its address " + quoted(value) + " is no telephone number and is left out";
        number.clear();
    }
    if (!remark.empty()) draft.remark(remark);
    return number;
}

}  // namespace Tool
