#include "tessera/phonebook/model/TelNo.h"

#include <array>
#include <string>
#include <string_view>

namespace PhoneBook {
namespace {

// The standard wide classification of digits knows these ten and no others.
bool isKept(WCHAR ch) {
    return (ch >= u'0' && ch <= u'9') || ch == u'P' || ch == u'T' || ch == u'*' || ch == u'#';
}

// The part behind the country code and its separator; the terminator when there is no separator.
const WCHAR* behindCountryCode(const WCHAR* text) {
    while (*text != u'\0' && *text != u' ' && *text != u'-')
        ++text;
    return *text == u'\0' ? text : text + 1;
}

std::size_t areaCodeLength(std::u16string_view number) {
    if (number[0] != u'0') return 0;
    return number[1] == u'2' ? 2 : 3;
}

}  // namespace

void makeCNIP(const WCHAR* in, WCHAR* out) {
    WCHAR* const end = out + nCNIPBufferLength_ - 1;
    if (in == nullptr) in = u"";
    if (*in == u'+') {
        in = behindCountryCode(in);
        *out++ = u'0';
    }
    for (; *in != u'\0' && out != end; ++in) {
        if (isKept(*in)) *out++ = *in;
    }
    *out = u'\0';
}

CString makeCNIP(const WCHAR* in) {
    std::array<WCHAR, nCNIPBufferLength_> buffer{};
    makeCNIP(in, buffer.data());
    return {buffer.data()};
}

CString makeTelNoStrFromCID(const WCHAR* cid) {
    const std::u16string_view number = cid == nullptr ? u"" : cid;
    if (number.size() < 5) return CString(number);

    const std::size_t areaCode = areaCodeLength(number);
    const std::u16string_view rest = number.substr(areaCode);
    const std::size_t middle = rest.size() == 7 ? 3 : 4;
    std::u16string text(number.substr(0, areaCode));
    if (areaCode > 0) text += u'-';
    text += rest.substr(0, middle);
    text += u'-';  // stands even when nothing follows
    if (rest.size() > middle) text += rest.substr(middle);
    return CString(text);
}

}  // namespace PhoneBook
