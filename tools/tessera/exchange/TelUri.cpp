#include "TelUri.h"

#include "../Records.h"
#include "ContactDraft.h"
#include "VCardValue.h"
#include "tessera/platform/base/Unicode.h"

namespace Tool {

namespace {

bool beginsWith(std::u16string_view text, std::u16string_view scheme) {
    CString front(text.substr(0, scheme.size()));
    front.MakeLower();
    return front.view() == scheme;
}

/// Percent signs are to an address what equals signs are to quoted-printable.
std::u16string withoutPercents(std::u16string_view text) {
    std::string quotable = utf8Of(text);
    for (char& ch : quotable)
        ch = ch == '%' ? '=' : ch;
    std::string bytes;
    const auto plain = decodeQuotedPrintable(quotable, bytes) ? textOfUtf8(bytes) : std::nullopt;
    return std::u16string(plain ? plain->view() : text);
}

/// Where numbers without a plus sign are valid: goes without saying in a phone book.
bool isContext(std::u16string_view parameters) {
    return beginsWith(parameters, u"phone-context=") && parameters.find(u';') == std::u16string_view::npos;
}

}  // namespace

TelValue telephoneNumberOf(std::u16string_view value) {
    constexpr std::u16string_view telephone = u"tel:";
    TelValue found{std::u16string(value), {}};
    // An address within an address comes of programs that take each other's for a number. No contact has a longer one.
    while (beginsWith(found.number, telephone) && found.number.size() <= static_cast<std::size_t>(longestText)) {
        std::u16string_view rest = found.number;
        while (beginsWith(rest, telephone))
            rest.remove_prefix(telephone.size());
        const std::size_t end = rest.find(u';');
        const bool isWhole = end == std::u16string_view::npos || isContext(rest.substr(end + 1));
        if (!isWhole)
            found.remark = quoted(rest.substr(end + 1)) + " behind the number " + quoted(value) + " is left out";
        found.number = withoutPercents(rest.substr(0, end));
    }
    if (beginsWith(found.number, u"sip:") || beginsWith(found.number, u"sips:") || beginsWith(found.number, u"http"))
        return {{}, "its address " + quoted(value) + " is no telephone number and is left out"};
    return found;
}

}  // namespace Tool
